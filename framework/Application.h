#pragma once

#include <functional>
#include <vector>

#include "framework/MenuItem.h"
#include "framework/Object.h"
#include "framework/Window.h"

class Toolkit;

/// The application object, and the framework's run from start to end around it. There is one.
class Application : public Object {
 public:
  Ref<::MenuBar> MenuBar;

  /// Runs `handler` when the item of that name is chosen and no handler of the front window has dealt with
  /// it.
  void _AddMenuHandler(const String& name, MenuHandlers::Handler handler);

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

  // --- What the toolkit hands back, on the main thread ----------------------------------------------------

  /// Runs a handler of the program: takes the baton, treats an exception, hands what has changed to the
  /// screen. An event that comes in the middle of another handler waits for its end.
  static void Deliver(std::function<void()> event);
  /// Notes what a user has done that no handler of the program hears of, such as moving a window. Never waits
  /// for another handler.
  static void Note(const std::function<void()>& change);
  /// After `Toolkit::Wake`: hands what has changed to the screen, shows message boxes that other threads ask
  /// for, leaves the loop after a quit.
  static void RunPending();
  /// The menus are about to be seen or used while `front` (or nil) is in front: decides which items are
  /// enabled.
  static void RefreshMenus(const Ref<Window>& front);
  /// The user has chosen an item. `front` is the window in front, or nil.
  static void Choose(const Ref<MenuItem>& item, const Ref<Window>& front);

  // --- What the framework asks of it, with the baton ------------------------------------------------------

  static void ScreenChanged();
  static void Place(Window& window);
  static void Present(Window& window);
  static void Forget(Window& window);
  static void Open(const Ref<Window>& window);
  static const std::vector<Ref<Window>>& OpenWindows();
  /// Waits in a handler on the main thread; see Toolkit.
  static void WaitForInput(const std::vector<int>& descriptors, int milliseconds);
  /// Ends the handler that waits on the main thread, by unwinding, once a quit has been asked for.
  static void LeaveWhenQuitting();

  /// The session or a signal asks for the end: a quit that shows no message, as nobody may be there. Any
  /// thread, with or without the baton.
  static void QuitFromOutside();
  /// The display has gone, and the toolkit is about to end the process on the thread that calls this, which
  /// may be one of its own. Threads end and the application is closed; in general it does not return.
  static void DisplayHasGone();
  static bool Quitting();
  static ::Toolkit* Toolkit();

 private:
  MenuHandlers handlers_;
};

/// Asks for the end of the program with this exit status, from any thread that holds the baton. The caller
/// goes on, and other threads run no more of the program's code; a second call changes nothing.
void Quit(int exitStatus);

/// Shows a message with one button and returns when the user has dismissed it. The baton is given away
/// meanwhile.
void MsgBox(const String& text);

/// Hands an address to the user's program for it (browser, mail). Says nothing of a failure.
void ShowURL(const String& address);

/// Runs a callback of the program and treats what it does not catch: a message box names the exception's
/// class, and the program goes on.
void _CallFunctionWithExceptionHandling(const std::function<void()>& callback);
/// Has all callbacks run by this function.
void InstallCallbackRoutine(void (*routine)(const std::function<void()>&));

template <class T>
Ref<T> ImplicitWindow(const String& name) {
  if (const auto open = _GetImplicitWindow(name)) return Cast<T>(open);
  Ref<T> made(new T);
  made->implicitName_ = name;
  Application::Open(made);
  try {
    made->Constructor();
  } catch (...) {  // not finished: the name does not find it, and nothing is left of it
    made->End();
    throw;
  }
  return made;
}
