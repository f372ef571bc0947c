#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>
#include <vector>

#include "framework/Window.h"
#include "framework/qt/ControlView.h"

class TabPanelView;

/// What stands in one window: the views of its controls, in their order above one another and for the Tab
/// key.
class WindowContent final : public QWidget {
 public:
  WindowContent(QWidget& parent, const Ref<Window>& window) : QWidget(&parent), window_(window) {}

  /// Copies what has changed in the controls, and makes the views of those that have become visible. With the
  /// baton.
  void Copy();

  /// What its labels say, from the top down.
  QString LabelTexts() const;
  /// What has the focus at first, nullptr where there is nothing to type into or to press.
  QWidget* FirstFocus() const;
  /// nullptr where the window has none.
  TabPanelView* Tabs() const { return tabs_; }

 private:
  ControlView* MakeView(const Ref<Control>& control);
  QPoint OriginOf(const Control& control) const;
  void Arrange();
  std::vector<ControlView*> InTabOrder() const;

  const Ref<Window> window_;
  TabPanelView* tabs_ = nullptr;
  std::vector<ControlView*> views_;  // as the window's controls; nullptr for one that has never been visible
};
