#pragma once

#include <QCheckBox>

#include "framework/CheckBox.h"
#include "framework/qt/ControlView.h"

class CheckBoxView final : public ViewOf<CheckBox, QCheckBox> {
 public:
  CheckBoxView(const Ref<CheckBox>& control, QWidget& parent);

 protected:
  void CopyOwn() override;
};
