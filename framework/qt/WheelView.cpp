#include "framework/qt/WheelView.h"

#include <QPainter>
#include <QPalette>
#include <algorithm>

namespace {

constexpr int kSpokes = 12;
constexpr int kStepTime = 80;  // milliseconds

}  // namespace

void WheelView::CopyOwn() {
  if (accessibleName().isEmpty()) setAccessibleName("Busy");
}

void WheelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(width() / 2.0, height() / 2.0);
  const double radius = std::min(width(), height()) / 2.0;
  QColor color = palette().color(QPalette::WindowText);
  for (int spoke = 0; spoke < kSpokes; ++spoke) {
    const int age = (step_ - spoke + kSpokes) % kSpokes;
    color.setAlphaF(std::max(0.12f, 1.0f - static_cast<float>(age) / (kSpokes - 2)));
    painter.setPen(QPen(color, radius * 0.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, -radius * 0.52), QPointF(0, -radius * 0.88));
    painter.rotate(360.0 / kSpokes);
  }
}

void WheelView::showEvent(QShowEvent*) {
  timer_.start(kStepTime, this);
}

void WheelView::timerEvent(QTimerEvent*) {
  step_ = (step_ + 1) % kSpokes;
  update();
}
