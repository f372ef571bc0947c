#include "framework/Window.h"

#include <algorithm>

#include "framework/Application.h"
#include "framework/PushButton.h"

void Window::Constructor() {
  Layout();
  CreateControls();
  AddMenuHandlers();
  Application::Place(*this);
  Event_Open();
  Touch();
}

void Window::Touch() {
  stale_ = true;
  if (open_) Application::ScreenChanged();
}

void Window::Show() {
  if (!open_) return;
  Visible = true;
  ++shows_;
  Touch();
  Application::Present(*this);
}

void Window::Close() {
  if (!open_) return;
  const Ref<Window> self(this);
  open_ = false;
  try {
    Event_Close();
  } catch (...) {
    End();
    throw;
  }
  End();
}

/// Takes the window from the registry and its controls from their users.
void Window::End() {
  open_ = false;
  for (const auto& control : controls_) control->window_ = nullptr;
  Application::Forget(*this);
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
  if (!open_) return;
  const int wider = width - Width;
  const int higher = height - Height;
  if (wider == 0 && higher == 0) return;
  Width = width;
  Height = height;
  for (const auto& control : controls_) control->FollowWindow(wider, higher);
}

void Window::UserMove(int left, int top) {
  if (!open_) return;
  Left = left;
  Top = top;
}

void Window::UserReturn() {
  for (const auto& control : controls_) {
    const auto button = Cast<PushButton>(control);
    if (button && button->Default && button->Reachable()) {
      button->UserPress();
      return;
    }
  }
}

void Window::AddControl(const Ref<Control>& control, const String& name, const Place& place) {
  control->Name = name;
  control->Apply(place);
  control->window_ = this;
  controls_.push_back(control);
  Touch();
}

Ref<Control> Window::ControlNamed(const String& name) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(),
                                  [&](const Ref<Control>& control) { return control->Name == name; });
  return found == controls_.end() ? nullptr : *found;
}
