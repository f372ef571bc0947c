#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "framework/Toolkit.h"

/// What a test does to the toolkit without a screen, and what it saw. It outlives the toolkit. On the main
/// thread alone.
struct Stage {
  /// Runs as the event loop starts, in place of the user. The loop goes on behind it until a quit.
  std::function<void()> script;
  /// What to do while each message box is up, one for each box in their order. A box nobody answers ends the
  /// test at once.
  std::deque<std::function<void()>> answers;
  std::vector<std::string> messages;

  /// Class names of the windows that were open at the last update, and of all that were at any.
  std::vector<std::string> openWindows;
  std::vector<std::string> windowsSeen;

  std::string presented;  // the windows whose pictures were waited for, such as "Window1 Window2 "

  std::vector<std::string> addresses;
  bool canEdit = false;
  std::vector<EditCommand> edits;
};

Stage& TheStage();

/// Answers the next message boxes by dismissing them.
void DismissMessages(int count);

/// Does what the main thread does between two events until the condition holds, which is looked at with the
/// baton. False when it does not within some seconds, or not by the end of the program.
bool PumpUntil(const std::function<bool()>& condition);
