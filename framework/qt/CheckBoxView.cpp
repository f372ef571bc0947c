#include "framework/qt/CheckBoxView.h"

#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionButton>

#include "framework/qt/Conversions.h"
#include "framework/qt/TextFitting.h"

CheckBoxView::CheckBoxView(const Ref<CheckBox>& control, QWidget& parent) : ViewOf(control, parent) {
  // Assistive technology ticks the box without a click.
  connect(this, &QCheckBox::toggled, this,
          [this](bool ticked) { Deliver([ticked](CheckBox& box) { box.UserSet(ticked); }); });
}

void CheckBoxView::CopyOwn() {
  const QSignalBlocker blocker(this);
  setText(Literal(control_->Caption));
  QStyleOptionButton option;
  initStyleOption(&option);
  const QSize room = style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this).size();
  setFont(Squeezed(FontOf(*control_), OneLine(control_->Caption), room, Wrapping::kNone));
  setChecked(control_->Value);
}
