#pragma once

#include <functional>
#include <vector>

#include "framework/Control.h"

/// Tabs; controls with a `TabPanelIndex` of n show while the n-th tab, counted from 1, is in front.
class TabPanel : public TextControl {
 public:
  /// The captions, joined by carriage returns.
  Property<String> TabDefinition{this};
  Property<bool> SmallTabs{this};
  /// The tab in front, counted from 0.
  Property<int> Value{this};

  /// After the user has moved to another tab; never while the window is made or closed.
  std::function<void(Ref<TabPanel>)> Change;

  std::vector<String> Captions() const;
  int FrontPanel() const override { return Value + 1; }

  /// The user has chosen a tab.
  void UserSelect(int tab);
};
