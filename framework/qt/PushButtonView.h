#pragma once

#include "framework/PushButton.h"
#include "framework/qt/ButtonView.h"

class PushButtonView final : public ButtonView<PushButton> {
 public:
  using ButtonView::ButtonView;

 protected:
  void CopyOwn() override;
};
