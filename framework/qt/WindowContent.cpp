#include "framework/qt/WindowContent.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "framework/qt/LabelView.h"
#include "framework/qt/MenuKeys.h"
#include "framework/qt/TabPanelView.h"

void WindowContent::Copy() {
  const auto& controls = window_->Controls();
  views_.resize(controls.size());
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const Ref<Control>& control = controls[i];
    const bool stale = control->TakeStale();
    const bool isNew = !views_[i] && control->Visible;
    if (isNew) views_[i] = MakeView(control);
    if (views_[i] && stale) views_[i]->Copy(OriginOf(*control));
    if (isNew) Arrange();
  }
}

ControlView* WindowContent::MakeView(const Ref<Control>& control) {
  const bool onPage = tabs_ && control->TabPanelIndex > 0;
  ControlView* view = ControlView::Make(control, onPage ? tabs_->Page(control->TabPanelIndex) : *this);
  if (auto* tabs = dynamic_cast<TabPanelView*>(view)) {
    tabs_ = tabs;
    // A list with the focus keeps these keys from keyPressEvent, where Ctrl+Tab and its like come; and of
    // those a shortcut would not know the one with Shift.
    OnKey(*window(), Qt::CTRL | Qt::Key_PageDown, [tabs] { tabs->Step(+1); });
    OnKey(*window(), Qt::CTRL | Qt::Key_PageUp, [tabs] { tabs->Step(-1); });
  }
  return view;
}

QPoint WindowContent::OriginOf(const Control& control) const {
  return tabs_ && control.TabPanelIndex > 0 ? tabs_->pos() : QPoint();
}

void WindowContent::Arrange() {
  for (ControlView* view : views_)
    if (view) view->Widget().raise();
  QWidget* last = nullptr;
  for (ControlView* view : InTabOrder()) {
    setTabOrder(last, &view->FocusWidget());
    last = &view->FocusWidget();
  }
}

std::vector<ControlView*> WindowContent::InTabOrder() const {
  const auto& controls = window_->Controls();
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < views_.size(); ++i)
    if (views_[i]) order.push_back(i);
  std::ranges::stable_sort(order, {}, [&](std::size_t i) {
    return std::pair(controls[i]->TabPanelIndex.Get(), controls[i]->TabIndex.Get());
  });
  std::vector<ControlView*> views;
  for (const std::size_t i : order) views.push_back(views_[i]);
  return views;
}

/// What has the focus at first. Tabs can have it, but a person comes for what stands under them.
QWidget* WindowContent::FirstFocus() const {
  for (ControlView* view : InTabOrder()) {
    QWidget& widget = view->FocusWidget();
    if (view != static_cast<ControlView*>(tabs_) && (widget.focusPolicy() & Qt::TabFocus)) return &widget;
  }
  return nullptr;
}

QString WindowContent::LabelTexts() const {
  std::vector<LabelView*> labels;
  for (ControlView* view : views_)
    if (auto* label = dynamic_cast<LabelView*>(view)) labels.push_back(label);
  std::ranges::stable_sort(labels, {}, [](const LabelView* label) { return label->y(); });
  QStringList words;
  for (const LabelView* label : labels) words += label->WholeText();
  return words.join(' ').simplified();
}
