#pragma once

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include "framework/MenuItem.h"

class Toolkit;

/// The main thread's part of the run: it delivers events to the program, one after the other, and hands what
/// has changed to the toolkit. There is one.
class EventLoop {
 public:
  /// Takes the toolkit over. `applicationBar` gives the menu bar of the application, or nil.
  static void Start(std::unique_ptr<Toolkit> toolkit, Ref<MenuBar> (*applicationBar)());
  /// Delivers events until the end is asked for. Called without the baton.
  static void Run();
  /// Ends `Run` soon, and a message that is up. Any thread.
  static void EndSoon();
  /// Drops what has not been delivered, and the toolkit.
  static void Shutdown();

  /// Asks for the end of the program: no handler starts any more. False when somebody has asked before. Any
  /// thread.
  static bool BeginQuit();
  static bool Quitting();

  // --- What the toolkit hands back, on the main thread ----------------------------------------------------

  /// Runs a handler of the program: takes the baton, treats an exception, hands what has changed to the
  /// screen. An event that comes in the middle of another handler waits for its end. One that there is no
  /// memory for is lost, and standard error says so: no exception may pass through a toolkit.
  template <class F>
  static void Deliver(F&& event) {
    try {
      DeliverOrThrow(std::forward<F>(event));
    } catch (const std::exception& exception) {
      std::fprintf(stderr, "An event was lost: %s\n", exception.what());
    }
  }
  /// Records what a user has done where no handler of the program is told, such as moving a window. Never
  /// waits for another handler.
  static void Record(const std::function<void()>& change);
  /// After `Toolkit::Wake`: hands what has changed to the screen, runs what was posted, leaves the loop when
  /// its end has been asked for.
  static void RunPending();

  // --- What the rest of the framework asks of it ----------------------------------------------------------

  /// Runs `task` on the main thread soon, when no handler runs, without the baton; not any more once the
  /// program quits. Any thread.
  static void Post(std::function<void()> task);
  /// Runs a callback of the program in its turn: with the baton, on the main thread.
  static void RunHandler(const std::function<void()>& callback);
  /// After the last of the handlers that run: runs the events that came in the middle of them, and hands over
  /// what has changed. Like RunHandler.
  static void EndEvent();
  /// Copies what has changed to the screen. On the main thread, with the baton.
  static void UpdateScreen();

  /// nullptr before the start and after the end.
  static ::Toolkit* Toolkit();

 private:
  static void DeliverOrThrow(std::function<void()> event);
};
