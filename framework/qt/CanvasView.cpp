#include "framework/qt/CanvasView.h"

#include <QPainter>

#include "framework/qt/Conversions.h"

void CanvasView::CopyOwn() {
  backdrop_ = control_->Backdrop;
}

void CanvasView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, ToQPixmap(backdrop_, size(), devicePixelRatioF()));
}
