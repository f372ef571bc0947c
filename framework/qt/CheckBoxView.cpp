#include "framework/qt/CheckBoxView.h"

#include <QStyle>
#include <QStyleOptionButton>

#include "framework/qt/Conversions.h"

CheckBoxView::CheckBoxView(const Ref<CheckBox>& control, QWidget& parent) : ViewOf(control, parent) {
  connect(this, &QCheckBox::clicked, this,
          [this](bool ticked) { Deliver([ticked](CheckBox& box) { box.UserSet(ticked); }); });
}

void CheckBoxView::CopyOwn() {
  setText(Literal(control_->Caption));
  QStyleOptionButton option;
  initStyleOption(&option);
  const QSize room = style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this).size();
  setFont(Squeezed(FontOf(*control_), OneLine(control_->Caption), room, Wrapping::kNone));
  setChecked(control_->Value);
}
