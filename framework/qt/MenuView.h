#pragma once

#include <QAction>
#include <QMenuBar>
#include <functional>
#include <vector>

#include "framework/MenuItem.h"
#include "framework/Window.h"

/// True where the platform has one bar for all windows of the program.
#ifdef Q_OS_MACOS
constexpr bool kOneBarForAll = true;
#else
constexpr bool kOneBarForAll = false;
#endif

/// Shows the items of a menu bar in one of Qt's. The items are there from the start; their texts and states
/// are copied.
class MenuView {
 public:
  /// The window in front, or nil.
  using Front = std::function<Ref<Window>()>;

  /// With the baton. `front` is asked at the user's events.
  MenuView(QMenuBar& bar, const Ref<MenuBar>& items, Front front);

  /// Copies what the items hold now. With the baton.
  void Copy();

  /// What a window without a menu bar takes over so that the shortcuts work there too.
  QList<QAction*> Actions() const;

 private:
  struct Entry {
    Ref<MenuItem> item;
    QAction* action = nullptr;
  };

  void AddMenu(QMenuBar& bar, const Ref<MenuItem>& menu);
  void AddItem(QMenu& menu, const Ref<MenuItem>& item);

  Front front_;
  std::vector<Entry> entries_;
};
