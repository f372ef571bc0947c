#pragma once

#include <functional>

#include "framework/Color.h"
#include "framework/Control.h"

/// Text that stands in a window. With `Multiline` off only its first line shows.
class Label : public TextControl {
 public:
  Property<String> Text{this};
  Property<int> TextAlign{this};  // 0 left, 1 centred, 2 right
  Property<Color> TextColor{this};
  Property<bool> Multiline{this}, Selectable{this}, Transparent{this};

  std::function<void(Ref<Label>)> MouseEnter;
  std::function<void(Ref<Label>)> MouseExit;
  /// With the position in the label. A label without this handler leaves the click to its window.
  std::function<bool(Ref<Label>, int x, int y)> MouseDown;

  void UserMouseEnter() {
    if (Reachable() && MouseEnter) MouseEnter(Ref<Label>(this));
  }
  void UserMouseExit() {
    if (Reachable() && MouseExit) MouseExit(Ref<Label>(this));
  }
  void UserMouseDown(int x, int y);
};
