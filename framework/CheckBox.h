#pragma once

#include "framework/Control.h"

class CheckBox : public TextControl {
 public:
  Property<String> Caption{this};
  Property<bool> Value{this};
  /// `Value` as a number: 0 unchecked, 1 checked.
  int State() const { return Value ? 1 : 0; }
  void State(int state) { Value = state != 0; }

  /// The user has ticked or cleared it.
  void UserSet(bool ticked) {
    if (Reachable()) Value = ticked;
  }
};
