#include "framework/qt/TextFitting.h"

#include <QFontMetrics>
#include <QStringList>
#include <algorithm>

namespace {

int WidestLine(const QFont& font, const QString& text) {
  const QFontMetrics metrics(font);
  int widest = 0;
  for (const QString& line : text.split('\n')) widest = std::max(widest, metrics.horizontalAdvance(line));
  return widest;
}

bool Fits(const QFont& font, const QString& text, QSize room, Wrapping wrapping) {
  if (WidestLine(font, text) <= room.width()) return true;
  if (wrapping == Wrapping::kNone) return false;
  const QRect place({0, 0}, room);
  return place.contains(QFontMetrics(font).boundingRect(place, Qt::TextWordWrap, text));
}

}  // namespace

QFont Squeezed(const QFont& font, const QString& text, QSize room, Wrapping wrapping) {
  constexpr int kNarrowest = 60;  // per cent
  if (Fits(font, text, room, wrapping)) return font;
  QFont narrow = font;
  for (int stretch = 100 * room.width() / WidestLine(font, text); stretch >= kNarrowest; --stretch) {
    narrow.setStretch(stretch);
    if (WidestLine(narrow, text) <= room.width()) return narrow;
  }
  return font;
}

QString Shortened(const QString& text, const QFont& font, QSize room, Wrapping wrapping) {
  if (Fits(font, text, room, wrapping)) return text;
  const auto where = wrapping == Wrapping::kNone ? Qt::ElideMiddle : Qt::ElideRight;
  QStringList lines = text.split('\n');
  for (QString& line : lines) line = QFontMetrics(font).elidedText(line, where, room.width());
  return lines.join('\n');
}
