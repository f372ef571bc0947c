#pragma once

#include <functional>

#include "framework/Color.h"
#include "framework/Control.h"
#include "framework/Picture.h"

/// A button that shows a picture.
class BevelButton : public TextControl {
 public:
  Property<String> Caption{this};
  Property<PictureRef> Icon{this};
  Property<int> Bevel{this}, ButtonType{this};
  Property<int> IconAlign{this}, IconDX{this}, IconDY{this};
  Property<int> CaptionAlign{this}, CaptionPlacement{this}, CaptionDelta{this};
  Property<bool> HasMenu{this};
  Property<int> MenuValue{this};
  Property<bool> Value{this};
  Property<bool> HasBackColor{this};
  Property<Color> BackColor{this}, TextColor{this};
  Property<bool> AcceptFocus{this};

  std::function<void(Ref<BevelButton>)> Action;

  /// The user has pressed it.
  void UserPress() {
    if (Reachable() && Action) Action(Ref<BevelButton>(this));
  }
};
