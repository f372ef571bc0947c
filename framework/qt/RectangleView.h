#pragma once

#include "framework/Rectangle.h"
#include "framework/qt/ControlView.h"

class RectangleView final : public ViewOf<Rectangle, QWidget> {
 public:
  using ViewOf::ViewOf;

 protected:
  void CopyOwn() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor fill_, topLeft_, bottomRight_;
  int border_ = 0;
};

/// The colour of the rectangle that a control is a part of, none where it is of none.
QColor ColorAround(const Control& control);
