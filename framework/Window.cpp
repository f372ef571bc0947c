#include "framework/Window.h"

#include <utility>

#include "framework/Screen.h"

namespace {

/// The open windows, in the order in which they were opened.
std::vector<Ref<Window>>& Windows() {
  static std::vector<Ref<Window>> windows;
  return windows;
}

}  // namespace

const std::vector<Ref<Window>>& Window::OpenWindows() {
  return Windows();
}

Ref<Window> _GetImplicitWindow(const String& name) {
  for (const auto& window : Windows())
    if (window->ImplicitName().Identical(name)) return window;
  return nullptr;
}

void Window::Open(const String& name) {
  implicitName_ = name;
  Windows().emplace_back(this);
  Screen::Installed().MarkOutOfDate();
  try {
    Constructor();
  } catch (...) {
    End();
    throw;
  }
}

void Window::Constructor() {
  Layout();
  CreateControls();
  AddMenuHandlers();
  PlaceOnScreen();
  Event_Open();
  MarkStale();
}

void Window::PlaceOnScreen() {
  const auto centreOn = [this](const Area& area) {
    Left = area.left + (area.width - Width) / 2;
    Top = area.top + (area.height - Height) / 2;
  };
  constexpr int kDefaultOffset = 40;  // pixels from the corner of the screen
  const Area screen = Screen::Installed().Usable();
  // The window that was opened first is the main window, and the parent of all others.
  const Window* const parent = Windows().empty() ? this : Windows().front().Get();
  if (Placement == kDefaultPosition) {
    Left = screen.left + kDefaultOffset;
    Top = screen.top + kDefaultOffset;
  } else if (Placement == kMainScreen || parent == this) {
    centreOn(screen);
  } else {
    centreOn({parent->Left, parent->Top, parent->Width, parent->Height});
  }
}

void Window::MarkStale() {
  stale_ = true;
  if (open_) Screen::Installed().MarkOutOfDate();
}

void Window::Show() {
  if (!open_) return;
  Visible = true;
  ++shows_;
  MarkStale();
  Screen::Installed().Present(*this);
}

void Window::Close() {
  if (!std::exchange(open_, false)) return;
  const Ref<Window> self(this);
  const struct Ending {
    Window& window;
    ~Ending() { window.End(); }
  } ending{*this};
  Event_Close();
}

/// Takes the window from the register and its controls from their users.
void Window::End() {
  for (const auto& control : controls_) control->StandIn(nullptr);
  std::erase_if(Windows(), [this](const Ref<Window>& open) { return open.Get() == this; });
  Screen::Installed().MarkOutOfDate();
}

void Window::_AddMenuHandler(const String& name, MenuHandlers::Handler handler) {
  handlers_.Add(name, std::move(handler));
}

void Window::UserClose() {
  if (open_ && CloseButton) Close();
}

void Window::UserMouseDown(int x, int y) {
  if (open_) Event_MouseDown(x, y);
}

void Window::UserResize(int width, int height) {
  const int wider = width - Width;
  const int higher = height - Height;
  Width = width;
  Height = height;
  for (const auto& control : controls_) control->FollowWindow(wider, higher);
}

void Window::UserMove(int left, int top) {
  Left = left;
  Top = top;
}

void Window::UserReturn() {
  for (const auto& control : controls_)
    if (control->UserReturn()) return;
}

void Window::AddControl(const Ref<Control>& control, const String& name, const Place& place) {
  control->Name = name;
  control->Apply(place);
  control->StandIn(this);
  controls_.push_back(control);
}

Ref<Control> Window::ControlNamed(const String& name) const {
  for (const auto& control : controls_)
    if (control->Name == name) return control;
  return nullptr;
}
