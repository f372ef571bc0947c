#pragma once

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QSize>
#include <QString>

#include "framework/Color.h"
#include "framework/Control.h"
#include "framework/Picture.h"

// From the framework's values to Qt's and back. Text on the way to the screen loses what could do harm there:
// control characters and bytes that are no text show as U+FFFD, and what is beyond all reading is cut off.

/// Text for one line: line breaks and tabs show as blanks.
QString OneLine(const String& text);
/// Text of several lines: CR, LF and CR LF all break a line.
QString Lines(const String& text);
String FromQString(const QString& text);
/// The tool tip that shows the text as it stands. Qt takes what looks like markup for markup there.
QString ToolTip(const QString& text);

/// A caption in which an ampersand is just that.
QString Literal(const String& caption);

QColor ToQColor(Color color);

/// The picture, made smaller where it is larger than the room, for a screen that shows one of the design's
/// pixels with `scale` of its own.
QPixmap ToQPixmap(const PictureRef& picture, QSize room, qreal scale);

QFont FontOf(const TextControl& control);
