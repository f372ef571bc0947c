#pragma once

#include "framework/Control.h"
#include "framework/Picture.h"

/// A picture that stands in a window. A click on it goes to the window.
class Canvas : public Control {
 public:
  Property<PictureRef> Backdrop{this};
  Property<bool> AcceptFocus{this}, AcceptTabs{this}, DoubleBuffer{this};
  Property<bool> EraseBackground{this, true}, UseFocusRing{this, true};
};
