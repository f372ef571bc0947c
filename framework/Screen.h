#pragma once

class Window;

/// The place of something on the screen, in pixels.
struct Area {
  int left = 0, top = 0, width = 0, height = 0;
};

/// What windows and menus need of the screen that shows them: the only way up they have, handed in by the one
/// that builds the run. All members are called with the baton.
class Screen {
 public:
  /// Says that what stands on it is out of date.
  virtual void MarkOutOfDate() {}
  /// Returns when the window's picture is on it.
  virtual void Present(Window&) {}
  /// The part of it where windows may stand.
  virtual Area Usable() { return {}; }

  /// The one that was handed in; before that one that shows nothing.
  static Screen& Installed();
  static void Install(Screen& screen);

 protected:
  ~Screen() = default;
};
