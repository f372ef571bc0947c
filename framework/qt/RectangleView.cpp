#include "framework/qt/RectangleView.h"

#include <QPainter>

#include "framework/qt/Conversions.h"

void RectangleView::CopyOwn() {
  fill_ = ToQColor(control_->FillColor);
  topLeft_ = ToQColor(control_->TopLeftColor);
  bottomRight_ = ToQColor(control_->BottomRightColor);
  border_ = control_->BorderWidth;
  update();
}

void RectangleView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), fill_);
  for (int i = 0; i < border_; ++i) {
    const QRect ring = rect().adjusted(i, i, -i, -i);
    painter.fillRect(ring.left(), ring.top(), ring.width() - 1, 1, topLeft_);
    painter.fillRect(ring.left(), ring.top(), 1, ring.height() - 1, topLeft_);
    painter.fillRect(ring.left(), ring.bottom(), ring.width(), 1, bottomRight_);
    painter.fillRect(ring.right(), ring.top(), 1, ring.height(), bottomRight_);
  }
}
