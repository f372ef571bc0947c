#pragma once

#include <vector>

/// How the main thread waits in the middle of a handler, and hears of other threads: handed in by the one
/// that builds the run. Called with the baton, and on the main thread where nothing else is said.
class MainThread {
 public:
  /// Waits until one of the descriptors (-1 counts as none) is readable, `milliseconds` have passed (-1 for
  /// no limit) or something else has happened.
  virtual void WaitForInput(const std::vector<int>& descriptors, int milliseconds) = 0;
  /// Ends the handler, by unwinding, once a quit has been asked for.
  virtual void LeaveWhenQuitting() = 0;
  /// A thread has been started or has ended. On any thread.
  virtual void ThreadHasChanged() {}

  /// The one that was handed in; before that one that just waits.
  static MainThread& Installed();
  static void Install(MainThread& mainThread);

 protected:
  ~MainThread() = default;
};
