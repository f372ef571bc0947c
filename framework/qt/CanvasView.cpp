#include "framework/qt/CanvasView.h"

#include <QPainter>

#include "framework/qt/Conversions.h"

void CanvasView::CopyOwn() {
  backdrop_ = control_->Backdrop;
  update();
}

void CanvasView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(0, 0, ToQImage(backdrop_));
}
