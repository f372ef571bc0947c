#pragma once

#include "framework/MenuItem.h"

/// The program's one menu bar, shared by the application and the main window. It is built whole when it is
/// made and never changes.
class MenuBar1 : public MenuBar {
 public:
  void Constructor() override;
  /// Builds the File menu.
  virtual void Untitled1();
  /// Builds the Edit menu, with the About item last.
  virtual void Untitled2();
};

/// The menu bar, made on first use and kept until ReleaseMenuBar1.
Ref<MenuBar1> MenuBar1();
void ReleaseMenuBar1();

/// The About item of the application's menu bar.
Ref<AppleMenuItem> AppleAbout();
