#pragma once

#include "framework/Thread.h"

/// The scan: asks the tool for its list, keeps the lines that name a plain HFS volume, has the main window
/// build its table from them, and closes the feedback window.
///
/// The main window has the one instance and starts it as it opens or when the user asks for a scan. The
/// tool's failing ends the program.
class scanTheBus : public Thread {
 protected:
  void Event_Run() override;
};
