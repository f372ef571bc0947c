#include "framework/qt/PushButtonView.h"

void PushButtonView::CopyOwn() {
  ButtonView::CopyOwn();
  setDefault(control_->Default);
}
