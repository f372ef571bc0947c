#pragma once

#include "framework/Canvas.h"
#include "framework/qt/ControlView.h"

class CanvasView final : public ViewOf<Canvas, QWidget> {
 public:
  using ViewOf::ViewOf;

 protected:
  void CopyOwn() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  PictureRef backdrop_;
};
