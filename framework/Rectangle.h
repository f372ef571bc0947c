#pragma once

#include "framework/Color.h"
#include "framework/Control.h"

/// A filled rectangle with a border inside its edges, of one colour at the top left and one at the bottom
/// right.
class Rectangle : public Control {
 public:
  Property<Color> FillColor{this, RGB(255, 255, 255)};
  Property<Color> TopLeftColor{this}, BottomRightColor{this};
  Property<int> BorderWidth{this, 1};
};
