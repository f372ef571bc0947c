#pragma once

#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <vector>

#include "framework/TabPanel.h"
#include "framework/qt/ControlView.h"

/// What the controls of one tab stand on.
class TabPage final : public QWidget {
 public:
  using QWidget::QWidget;
};

/// Tabs of a panel, of which the one in front shows the focus whatever brought it.
class Tabs final : public QTabBar {
 public:
  using QTabBar::QTabBar;

 protected:
  void initStyleOption(QStyleOptionTab* option, int tab) const override;
  void paintEvent(QPaintEvent* event) override;
};

/// Tabs over a pane. Each tab has a page of the size of the whole, so that a control's place on it is its
/// place in the window less that of the panel, whatever the style's tabs measure.
class TabPanelView final : public ViewOf<TabPanel, QWidget> {
 public:
  TabPanelView(const Ref<TabPanel>& control, QWidget& parent);

  QWidget& FocusWidget() override { return bar_; }

  /// What the controls of a panel, counted from 1, stand on.
  QWidget& Page(int panel);
  /// The user goes on by `tabs`, and around the end.
  void Step(int tabs);

 protected:
  void CopyOwn() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void MakePages();
  void ShowPages();
  QStyleOptionTabWidgetFrame FrameOption() const;
  void PlaceBar();

  Tabs bar_;
  std::vector<QWidget*> pages_;
};
