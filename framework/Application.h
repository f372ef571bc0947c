#pragma once

#include <functional>

#include "framework/MenuHandlers.h"
#include "framework/MenuItem.h"
#include "framework/Object.h"

/// The application object, and the order of the framework's run around it. There is one.
class Application : public Object {
 public:
  Ref<::MenuBar> MenuBar;

  /// Runs `handler` when the item of that name is chosen and no handler of the front window has dealt with
  /// it.
  void _AddMenuHandler(const String& name, MenuHandlers::Handler handler);
  const MenuHandlers& Handlers() const { return handlers_; }

  // Events of the application. `Event_EnableMenuItems` runs whenever the menus are refreshed, the others
  // once.
  virtual void Event_Close() {}
  virtual void Event_EnableMenuItems() {}
  virtual void Event_Open() {}

  /// The application object that has been registered; nil before.
  static Ref<Application> Current();
  static void Register(const Ref<Application>& application);

  // --- The run of the program, in this order -------------------------------------------------------------

  /// Starts the framework. Nothing of it works before.
  static void Start(int& argc, char** argv);
  /// Fires the application's open event, then calls `lateStartup`. An exception there ends the program, after
  /// its message.
  static void RunFrameworkInitialization(void (*lateStartup)());
  /// Delivers events until a quit. Then ends all threads, closes all windows and fires the application's
  /// close event.
  static void RunEventLoop();
  /// Ends the framework. Returns the process's exit status.
  static int Shutdown();

  // --- Ends that come from outside -------------------------------------------------------------------------

  /// The session or a signal asks for the end: a quit that shows no message, as nobody may be there. Any
  /// thread, with or without the baton.
  static void QuitFromOutside();
  /// The display has gone, and the toolkit is about to end the process on the thread that calls this, which
  /// may be one of its own. Threads end and the application is closed; in general it does not return.
  static void DisplayHasGone();

 private:
  MenuHandlers handlers_;
};

/// Asks for the end of the program with this exit status, from any thread that holds the baton. The caller
/// goes on, and other threads run no more of the program's code; a second call changes nothing.
void Quit(int exitStatus);

/// Hands an address to the user's program for it (browser, mail). Says nothing of a failure.
void ShowURL(const String& address);

/// Runs a callback of the program and treats what it does not catch: a message box names the exception's
/// class, and the program goes on.
void _CallFunctionWithExceptionHandling(const std::function<void()>& callback);
