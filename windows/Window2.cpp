#include "windows/Window2.h"

#include "framework/Text.h"
#include "windows/Pictures.h"
#include "windows/Window1.h"

Ref<class Window2> Window2() {
  return ImplicitWindow<class Window2>("Window2.Window2");
}

void Window2::Layout() {
  Width = 397, Height = 102;
  Frame = kSheet;
  Composite = true;
  BackColor = RGB(0xCC, 0xCC, 0xCC);
  Title = "Looking for drives...";
  CloseButton = false;
}

void Window2::CreateControls() {
  _CreateControls0();
}

// clang-format off
void Window2::_CreateControls0() {
  //                                           parent panel tab left top width height
  const auto body = Add<Label>("StaticText1", 12, {"", 0, 0, 101,  56, 236,  34});
  body->Text = "Looking for Drives / Partitions" + Chr(13) + "Please wait...";
  body->Multiline = true;

  Add<ProgressWheel>("ChasingArrows1",            {"", 0, 1, 346,  55,  16,  16});

  const auto logo = Add<Canvas>("Canvas1",        {"", 0, 1,  20,  21,  64,  64});
  logo->Backdrop = logo64x64();
  logo->AccessibleName = "Logo";

  const auto title = Add<Label>("staticTitle", 12, {"", 0, 2, 101, 21, 276,  19});
  title->Text = "'diskutil' command...";
  title->Bold = true;
}
// clang-format on

void Window2::Event_Open() {
  ::Window2()->Top = ::Window1()->Top + 20;
  ::Window2()->Left = ::Window1()->Left + 30;
}
