#include "framework/qt/ControlView.h"

#include "framework/qt/Accessibility.h"
#include "framework/qt/BevelButtonView.h"
#include "framework/qt/CanvasView.h"
#include "framework/qt/CheckBoxView.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/LabelView.h"
#include "framework/qt/ListView.h"
#include "framework/qt/PushButtonView.h"
#include "framework/qt/RectangleView.h"
#include "framework/qt/TabPanelView.h"
#include "framework/qt/TextAreaView.h"
#include "framework/qt/WheelView.h"

namespace {

template <class ControlClass, class View>
ControlView* MakeIf(const Ref<Control>& control, QWidget& parent) {
  const auto cast = Cast<ControlClass>(control);
  return cast ? new View(cast, parent) : nullptr;
}

}  // namespace

ControlView* ControlView::Make(const Ref<Control>& control, QWidget& parent) {
  for (const auto make :
       {MakeIf<PushButton, PushButtonView>, MakeIf<Label, LabelView>, MakeIf<Listbox, ListView>,
        MakeIf<CheckBox, CheckBoxView>, MakeIf<TabPanel, TabPanelView>, MakeIf<Rectangle, RectangleView>,
        MakeIf<TextArea, TextAreaView>, MakeIf<Canvas, CanvasView>, MakeIf<ProgressWheel, WheelView>,
        MakeIf<BevelButton, BevelButtonView>})
    if (ControlView* view = make(control, parent)) return view;
  return nullptr;
}

void ControlView::Copy(QPoint origin) {
  const Control& control = ShownControl();
  QWidget& widget = Widget();
  widget.setGeometry(control.Left - origin.x(), control.Top - origin.y(), control.Width, control.Height);
  widget.setEnabled(control.Enabled);
  if (!control.AccessibleName.Get().Empty()) SetAccessibleName(widget, OneLine(control.AccessibleName));
  if (const QString more = OneLine(control.AccessibleDescription); more != widget.accessibleDescription())
    widget.setAccessibleDescription(more);
  CopyOwn();
  widget.setVisible(control.Visible);
}
