#pragma once

#include <QColor>
#include <QRect>

class QPainter;
class QWidget;

/// A colour with some of another in it.
QColor Mixed(QColor color, QColor other);
/// A line of one pixel inside the edges of `area`, sharp at every scale.
void PaintRing(QPainter& painter, QRect area, QColor topLeft, QColor bottomRight);
/// Draws the focus into a part of a widget whose own drawing does not show it. Called after that.
void PaintFocusRing(QWidget& widget, QRect part);
