#pragma once

#include "framework/Listbox.h"
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

// What the scan does with the tool's text, one step after the other. Both yield as they go.

/// Adds a row for each line of the text. What stands behind the last line end is no line.
void SplitIntoLines(const String& text, Listbox& lines);
/// Takes out all rows but those that name a plain HFS volume.
void KeepPlainHfs(Listbox& lines);
