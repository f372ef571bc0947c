#pragma once

#include "framework/Control.h"

class CheckBox : public TextControl {
 public:
  Property<String> Caption{this};
  Property<bool> Value{this};
  Property<int> State{this};  // 0 unchecked, 1 checked

  /// The user has ticked or cleared it.
  void UserSet(bool ticked) {
    if (!Reachable()) return;
    Value = ticked;
    State = ticked ? 1 : 0;
  }
};
