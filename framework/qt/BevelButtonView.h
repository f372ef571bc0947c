#pragma once

#include "framework/BevelButton.h"
#include "framework/qt/ButtonView.h"

class BevelButtonView final : public ButtonView<BevelButton> {
 public:
  using ButtonView::ButtonView;

 protected:
  void CopyOwn() override;
};
