#pragma once

#include <QFont>
#include <QSize>
#include <QString>

// Text in the room that the design gives it, in pixels.

/// How `text` is laid out in the room it has.
enum class Wrapping { kNone, kWords };

/// `font` with narrower letters where the text would not fit into the room. The design's widths were drawn
/// for one platform's font; others are wider.
QFont Squeezed(const QFont& font, const QString& text, QSize room, Wrapping wrapping);
/// `text` with a part of its lines left out where they do not fit into the room: the middle, and in a text
/// that would wrap the end, as the room is narrow and a name may come late in the line.
QString Shortened(const QString& text, const QFont& font, QSize room, Wrapping wrapping);
