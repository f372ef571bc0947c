#include "framework/qt/Painting.h"

#include <QPainter>
#include <QWidget>

QColor Mixed(QColor color, QColor other) {
  constexpr float kPart = 0.4f;
  const auto mix = [](float a, float b) { return a + (b - a) * kPart; };
  return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                          mix(color.blueF(), other.blueF()));
}

void PaintRing(QPainter& painter, QRect area, QColor topLeft, QColor bottomRight) {
  painter.fillRect(area.left(), area.top(), area.width(), 1, topLeft);
  painter.fillRect(area.left(), area.top(), 1, area.height(), topLeft);
  painter.fillRect(area.left(), area.bottom(), area.width(), 1, bottomRight);
  painter.fillRect(area.right(), area.top(), 1, area.height(), bottomRight);
}

void PaintFocusRing(QWidget& widget, QRect part) {
  if (!widget.hasFocus()) return;
  QPainter painter(&widget);
  const QColor color = widget.palette().color(QPalette::Highlight);
  PaintRing(painter, part, color, color);
}
