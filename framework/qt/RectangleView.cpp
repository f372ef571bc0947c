#include "framework/qt/RectangleView.h"

#include <QPainter>

#include "framework/Window.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/Painting.h"

void RectangleView::CopyOwn() {
  fill_ = ToQColor(control_->FillColor);
  topLeft_ = ToQColor(control_->TopLeftColor);
  bottomRight_ = ToQColor(control_->BottomRightColor);
  border_ = control_->BorderWidth;
}

void RectangleView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), fill_);
  for (int i = 0; i < border_; ++i) PaintRing(painter, rect().adjusted(i, i, -i, -i), topLeft_, bottomRight_);
}

QColor ColorAround(const Control& control) {
  for (const auto& other : control.StandsIn()->Controls()) {
    const auto rectangle = Cast<Rectangle>(other);
    if (rectangle && rectangle->Name.Get() == control.InitialParent) return ToQColor(rectangle->TopLeftColor);
  }
  return {};
}
