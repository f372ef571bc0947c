#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/Picture.h"
#include "framework/Screen.h"
#include "framework/String.h"
#include "framework/Window.h"

/// What can be done with the text control that has the focus or had it last.
enum class EditCommand { kUndo, kCut, kCopy, kPaste, kClear };

/// What shows the framework's windows and brings the user's events. One is linked into each executable.
///
/// All members are called on the main thread but `Wake`. A toolkit hands events back through
/// `EventLoop::Deliver` (handlers) and `EventLoop::Record` (bookkeeping), and calls
/// `EventLoop::RunPending` when it has been woken.
class Toolkit {
 public:
  virtual ~Toolkit() = default;

  /// The linked toolkit, made before anything else.
  static std::unique_ptr<Toolkit> Make(int& argc, char** argv);

  /// Runs until `EndLoop`. Called without the baton.
  virtual void RunLoop() = 0;
  /// Ends the loop and all message boxes that are up.
  virtual void EndLoop() = 0;

  /// Asks for a call of `EventLoop::RunPending` on the main thread soon. Any thread; calls are merged.
  virtual void Wake() = 0;

  /// Copies what has changed to the screen: shows windows that are new to it, and when their pictures are
  /// there drops those that are no longer among `open`. Called with the baton; later painting works on the
  /// copies.
  virtual void Update(const std::vector<Ref<Window>>& open, const Ref<MenuBar>& bar) = 0;

  /// Returns when the window's picture is on the screen, or after a bounded wait. No user event is delivered
  /// meanwhile.
  virtual void Present(Window& window) = 0;

  /// Shows a modal message with one button and returns when it has been dismissed or the loop ends. Called
  /// without the baton.
  virtual void ShowMessage(const String& text) = 0;

  /// Waits until one of the descriptors (-1 counts as none) is readable, `milliseconds` have passed (-1 for
  /// no limit) or something has happened on the screen. Windows repaint meanwhile; the user's input waits.
  virtual void WaitForInput(const std::vector<int>& descriptors, int milliseconds) = 0;

  /// The part of the main screen that windows may use.
  virtual Area ScreenArea() = 0;

  /// Opens the address with the user's program for it. Waits no longer than a moment; a failure is told on
  /// standard error.
  virtual void OpenAddress(const String& address) = 0;

  /// Reads a picture file of a format the framework does not read by itself; nil when it cannot be read.
  virtual PictureRef ReadPicture(const std::string& path) = 0;

  /// Whether the text control that has the focus, or had it last and still shows, can do this now, and the
  /// doing of it.
  virtual bool CanEdit(EditCommand command) = 0;
  virtual void Edit(EditCommand command) = 0;
};
