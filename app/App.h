#pragma once

#include "framework/Application.h"

/// The application object: the three settings and the application's events.
///
/// The settings are plain values that every part of the program reads and writes directly. They are loaded
/// once, before the main window opens, and saved once, at the end.
class App : public Application {
 public:
  void Event_Close() override;
  void Event_EnableMenuItems() override;
  void Event_Open() override;
  virtual bool _AppleAbout_Action();
  /// Writes the settings to "Dravik.prefs". Raises NilObjectException when the file cannot be made.
  virtual void savePrefs();
  /// Reads the settings from "Dravik.prefs", or takes the defaults where there is no such file or it has
  /// another version. Raises NilObjectException when the file is there and cannot be opened.
  virtual void loadPrefs();
  void Constructor() override;

  bool scan = false;             // run a scan as the main window opens
  bool showFeedbackWin = false;  // show the feedback window during a scan or a mount
  bool showUnMountBtn = false;   // show the unMount button
  String vrs;                    // version of the file that was read, empty when none was
};

/// The registered application object.
Ref<App> App();
