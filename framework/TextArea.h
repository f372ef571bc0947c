#pragma once

#include "framework/Color.h"
#include "framework/Control.h"

/// Text of many lines that a user may edit where it is not read-only.
class TextArea : public TextControl {
 public:
  Property<String> Text{this};
  Property<Color> TextColor{this}, BackColor{this, RGB(255, 255, 255)};
  Property<double> LineSpacing{this, 1.0};
  Property<int> Alignment{this};
  Property<int> LimitText{this};
  Property<bool> ReadOnly{this}, Multiline{this}, Styled{this}, Border{this, true};
  Property<bool> ScrollbarVertical{this}, ScrollbarHorizontal{this};
  Property<bool> HideSelection{this, true}, UseFocusRing{this, true}, AcceptTabs{this};
  Property<bool> AutomaticallyCheckSpelling{this};
  Property<String> Format{this}, Mask{this};

  /// The user has changed the text.
  void UserEdit(String text) {
    if (Reachable() && !ReadOnly) Text = std::move(text);
  }
};
