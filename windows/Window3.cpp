#include "windows/Window3.h"

#include "windows/Locks.h"

Ref<class Window3> Window3() {
  return ImplicitWindow<class Window3>("Window3.Window3");
}

void Window3::Layout() {
  Placement = kParentWindow;
  Width = 720, Height = 493;
  MinWidth = 720, MinHeight = 320;
  MaxWidth = 1024, MaxHeight = 800;
  Frame = kSheet;
  Composite = true;
  BackColor = RGB(0xCC, 0xCC, 0xCC);
  Resizeable = true, LiveResize = true;
}

void Window3::CreateControls() {
  _CreateControls0();
}

// clang-format off
void Window3::_CreateControls0() {
  //                                               parent panel tab left top width height locks
  const auto ok = Add<PushButton>("PushButton1", 10,  {"", 0, 0, 320, 453,  80,  20, L | B});
  ok->Caption = "OK";
  ok->Default = true;
  ok->Action = Handler(&Window3::PushButton1_Action);

  const auto title = Add<Label>("staticTitle", 14,    {"", 0, 1,  20,   8, 680,  20, L | T | R});
  title->Text = "...";
  title->Bold = true;
  title->TextAlign = 1;

  const auto report = Add<TextArea>("infoFld", 11,    {"", 0, 2,  20,  35, 680, 406, L | T | R | B});
  report->TextFont = "Monaco";
  report->Multiline = true;
  report->Styled = true;
  report->ScrollbarVertical = true;
  report->AutomaticallyCheckSpelling = true;
  report->AccessibleName = "Report";
}
// clang-format on

void Window3::PushButton1_Action(Ref<PushButton>) {
  ::Window3()->Close();
}

void Window3::Event_Open() {
  Resizeable = true;
}
