#pragma once

#include <utility>
#include <vector>

#include "framework/Color.h"
#include "framework/Control.h"
#include "framework/MenuHandlers.h"
#include "framework/MenuItem.h"

/// A window: a value on the framework's side, shown by the toolkit from outside. Subclasses lay it out, make
/// its controls and handle its events. A window lives until it is closed, whoever holds it: it stands in a
/// register of its own.
///
/// Made and closed on any thread that holds the baton.
class Window : public Viewed, public Container {
 public:
  enum FrameStyle { kDocument = 0, kMovableModal = 1, kSheet = 8 };
  enum PlacementStyle { kDefaultPosition = 0, kParentWindow = 1, kMainScreen = 2 };

  /// Lays the window out, makes its controls, puts it at its place and runs `Event_Open`.
  void Constructor() override;
  void MarkStale() override;

  /// Puts the window on the screen and in front. On the main thread it returns when its picture is there.
  virtual void Show();
  /// Ends the window. Closing one that is closed does nothing.
  virtual void Close();

  Property<String> Title{this};
  Property<int> Frame{this, kDocument};
  Property<int> Placement{this, kDefaultPosition};
  /// Position of the content's top left corner on the screen, in pixels.
  Property<int> Left{this}, Top{this};
  Property<int> Width{this, 300}, Height{this, 300};
  Property<int> MinWidth{this, 64}, MinHeight{this, 64}, MaxWidth{this, 32000}, MaxHeight{this, 32000};
  Property<bool> Resizeable{this}, LiveResize{this};
  Property<bool> CloseButton{this, true}, MinimizeButton{this, true};
  Property<bool> MaximizeButton{this}, FullScreenButton{this}, FullScreen{this};
  Property<bool> MenuBarVisible{this, true};
  Property<bool> Visible{this, true};
  Property<bool> Composite{this};
  Property<bool> HasBackColor{this};
  Property<Color> BackColor{this, RGB(255, 255, 255)};
  Property<int> MacProcID{this};

  /// The window's own menu bar, nil for none.
  Ref<::MenuBar> MenuBar;

  const std::vector<Ref<Control>>& Controls() const override { return controls_; }
  /// The control of that name as a `T`; nil when there is none.
  template <class T>
  Ref<T> Named(const String& name) const {
    return Cast<T>(ControlNamed(name));
  }

  /// The item of that name in the window's menu bar as a `T`; nil when there is none.
  template <class T>
  Ref<T> ItemNamed(const String& name) const {
    return Cast<T>(MenuBar->_Lookup(name));
  }

  /// Runs `handler` when the item of that name is chosen while this window is in front.
  void _AddMenuHandler(const String& name, MenuHandlers::Handler handler);
  const MenuHandlers& Handlers() const { return handlers_; }

  bool IsOpen() const { return open_; }
  /// The name that finds the window in the register.
  const String& ImplicitName() const { return implicitName_; }
  /// Registers the window under that name, so that it is found while it is made, and makes it. One that could
  /// not be finished is taken out again.
  void Open(const String& name);
  /// The register: the windows that are open, in the order in which they were opened.
  static const std::vector<Ref<Window>>& OpenWindows();

  // What a user does to the window.
  void UserClose();
  void UserMouseDown(int x, int y) override;
  void UserResize(int width, int height);
  void UserMove(int left, int top);
  /// The Return key, in a control that has no use for it.
  void UserReturn();
  void ControlChanged() override { MarkStale(); }

  /// Whether a property of the window or of one of its controls has changed since the last call.
  bool TakeStale() { return std::exchange(stale_, false); }
  /// Counts calls of `Show`, for the screen to bring the window to the front once for each.
  int Shows() const { return shows_; }

 protected:
  virtual void Layout() {}
  virtual void CreateControls() {}
  virtual void AddMenuHandlers() {}
  virtual void Event_Open() {}
  virtual void Event_Close() {}
  /// A click on the window itself. The result says whether the click has been dealt with.
  virtual bool Event_MouseDown(int, int) { return false; }

  /// Adds a control that shows no text.
  template <class T>
  Ref<T> Add(const String& name, const Place& place) {
    Ref<T> control = New<T>();
    AddControl(control, name, place);
    return control;
  }
  /// Adds a control that shows text. The text's size is set before anything else.
  template <class T>
  Ref<T> Add(const String& name, double textSize, const Place& place) {
    Ref<T> control = New<T>();
    control->TextSize = textSize;
    control->TextUnit = 0;
    AddControl(control, name, place);
    return control;
  }

  /// A control's event as a call of the window's handler.
  template <class Self, class Result, class... Arguments>
  auto Handler(Result (Self::*handler)(Arguments...)) {
    return [self = static_cast<Self*>(this), handler](Arguments... arguments) -> Result {
      return (self->*handler)(std::move(arguments)...);
    };
  }

 private:
  void PlaceOnScreen();
  void End();
  void AddControl(const Ref<Control>& control, const String& name, const Place& place);
  Ref<Control> ControlNamed(const String& name) const;

  std::vector<Ref<Control>> controls_;
  MenuHandlers handlers_;
  String implicitName_;
  bool open_ = true;
  bool stale_ = true;
  int shows_ = 0;
};

/// The open window that is registered under this class name, or nil.
Ref<Window> _GetImplicitWindow(const String& name);

/// The open window of this class, or a new one, which the name finds from its construction on.
template <class T>
Ref<T> ImplicitWindow(const String& name) {
  if (const auto open = _GetImplicitWindow(name)) return Cast<T>(open);
  Ref<T> made(new T);
  made->Open(name);
  return made;
}
