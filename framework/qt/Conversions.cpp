#include "framework/qt/Conversions.h"

#include <QFontDatabase>
#include <QTextDocument>
#include <algorithm>

#include "framework/qt/ShownText.h"

namespace {

constexpr std::size_t kLineLimit = 1000;  // characters
constexpr std::size_t kLinesLimit = 4000;

constexpr char32_t kReplacement = 0xFFFD;

enum class Breaks { kAsBlanks, kKept };

/// Besides what has a stand-in: surrogates, as which bytes that are no text are carried, and what is no
/// character.
bool IsHarmful(char32_t c) {
  return ShownText::HasStandIn(c) || (c & 0xFFFFF800) == 0xD800 || (c & 0xFFFE) == 0xFFFE;
}

QString Printable(const String& text, Breaks breaks, std::size_t limit) {
  const std::size_t size = std::min(text.Size(), limit);
  std::u32string shown;
  for (std::size_t i = 0; i < size; ++i) {
    const char32_t c = text[i];
    if (c == '\n' && i > 0 && text[i - 1] == '\r') continue;
    if (ShownText::IsBreak(c))
      shown += breaks == Breaks::kKept ? U'\n' : U' ';
    else if (c == '\t')
      shown += breaks == Breaks::kKept ? U'\t' : U' ';
    else
      shown += IsHarmful(c) ? kReplacement : c;
  }
  if (size < text.Size()) shown += U'…';
  return QString::fromUcs4(shown.data(), static_cast<qsizetype>(shown.size()));
}

}  // namespace

QString OneLine(const String& text) {
  return Printable(text, Breaks::kAsBlanks, kLineLimit);
}

QString Lines(const String& text) {
  return Printable(text, Breaks::kKept, kLinesLimit);
}

String FromQString(const QString& text) {
  return String(text.toStdString());
}

QString ToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

QString Literal(const String& caption) {
  return OneLine(caption).replace('&', "&&");
}

QColor ToQColor(Color color) {
  return QColor::fromRgb(QRgb{0xFF000000u | color.rgb});
}

QPixmap ToQPixmap(const PictureRef& picture, QSize room, qreal scale) {
  if (!picture) return {};
  const auto* pixels = reinterpret_cast<const uchar*>(picture->pixels.data());
  const QImage image(pixels, picture->width, picture->height, picture->width * 4, QImage::Format_ARGB32);
  const bool fits = image.width() <= room.width() && image.height() <= room.height();
  const QSize shown = fits ? image.size() : image.size().scaled(room, Qt::KeepAspectRatio);
  QPixmap pixmap =
      QPixmap::fromImage(image.scaled(shown * scale, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  pixmap.setDevicePixelRatio(scale);
  return pixmap;
}

QFont FontOf(const TextControl& control) {
  constexpr int kStandardSize = 13;  // pixels
  constexpr int kSmallSize = 11;
  const bool small = control.TextFont == "SmallSystem";
  QFont font;
  if (!small && control.TextFont != "System") {
    font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamilies({OneLine(control.TextFont), font.family()});
    font.setStyleHint(QFont::Monospace);
  }
  const int size = qRound(control.TextSize.Get());
  font.setPixelSize(size > 0 ? size : small ? kSmallSize : kStandardSize);
  font.setBold(control.Bold);
  font.setItalic(control.Italic);
  font.setUnderline(control.Underline);
  return font;
}
