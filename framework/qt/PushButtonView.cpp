#include "framework/qt/PushButtonView.h"

#include "framework/qt/Conversions.h"

void PushButtonView::CopyOwn() {
  setFont(FontOf(*control_));
  setText(Literal(control_->Caption));
  setDefault(control_->Default);
}
