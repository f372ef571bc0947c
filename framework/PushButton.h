#pragma once

#include <functional>

#include "framework/Control.h"

class PushButton : public TextControl {
 public:
  Property<String> Caption{this};
  Property<bool> Default{this};  // pressed by the Return key
  Property<bool> Cancel{this};
  Property<int> ButtonStyle{this};

  std::function<void(Ref<PushButton>)> Action;

  /// The user has pressed it.
  void UserPress() {
    if (Reachable() && Action) Action(Ref<PushButton>(this));
  }
  bool UserReturn() override {
    if (!Default || !Reachable()) return false;
    UserPress();
    return true;
  }
};
