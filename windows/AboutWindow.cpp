#include "windows/AboutWindow.h"

#include "framework/Application.h"
#include "framework/Text.h"
#include "windows/Pictures.h"

namespace {

constexpr const char* kWebAddress = "https://www.dravik.example/";
/// The address that is shown and the one that mail goes to are two: whoever changes one changes the other by
/// hand.
constexpr const char* kShownMailAddress = "contact@dravik.example";
constexpr const char* kMailAddress = "mailto:contacts@dravik.example?subject=Dravik";
constexpr const char* kDonationAddress = "https://www.dravik.example/paypal.php?app=Dravik";

String Description() {
  String text;
  for (const char* line : {
           "This application is freeware, use it to: ",
           "   • mount/unmout your disks or partitions",
           "   • get information about a disk or partition",
           "",
           "Made by the Dravik team",
           "",
           "Dravik is a simple interface for some options of the Terminal command 'diskutil':",
           "   • diskutil list",
           "   • diskutil mount (or unmount)",
           "   • diskutil info",
           "",
           "To know more, open the Terminal located in ~/Applications/Utilities and type 'man diskutil'.",
       })
    text += line + Chr(13);
  return text;
}

void Highlight(Label& link) {
  link.TextColor = RGB(0, 0, 255);
  link.Underline = true;
}

void Unhighlight(Label& link) {
  link.TextColor = RGB(0, 0, 0);
  link.Underline = false;
}

/// The window goes before its link opens. Says that the click has not been dealt with.
bool CloseAndOpen(const String& address) {
  ::AboutWindow()->Close();
  ShowURL(address);
  return false;
}

}  // namespace

Ref<class AboutWindow> AboutWindow() {
  return ImplicitWindow<class AboutWindow>("AboutWindow.AboutWindow");
}

void AboutWindow::Layout() {
  Frame = kMovableModal;
  Placement = kParentWindow;
  Width = 380, Height = 355;
  Composite = true;
  BackColor = RGB(0xCC, 0xCC, 0xCC);
}

void AboutWindow::CreateControls() {
  _CreateControls0();
}

// clang-format off
void AboutWindow::_CreateControls0() {
  //                                                     parent panel tab left top width height
  const auto frame = Add<Rectangle>("Rectangle1",             {"", 0, 0,  40,  37,  68,  68});
  frame->FillColor = RGB(0xFF, 0xFF, 0xFF);
  frame->BorderWidth = 2;
  frame->TopLeftColor = RGB(0x85, 0x85, 0x85);
  frame->BottomRightColor = RGB(0xFF, 0xFF, 0xFF);

  const auto logo = Add<Canvas>("Canvas1",          {"Rectangle1", 0, 0,  42,  39,  64,  64});
  logo->Backdrop = logo64x64();
  logo->AccessibleName = "Logo";

  const auto name = Add<Label>("StaticText1", 24,             {"", 0, 0, 134,  37, 186,  27});
  name->Text = "Dravik";
  name->Bold = true;

  const auto version = Add<Label>("StaticText3",              {"", 0, 1, 134,  63, 186,  15});
  version->TextFont = "SmallSystem";
  version->Text = "Version 1.4 - December, 2013";

  const auto description = Add<TextArea>("EditField1", 11,    {"", 0, 3,  40, 123, 300,  76});
  description->Text = Description();
  description->ReadOnly = true;
  description->Multiline = true;
  description->ScrollbarVertical = true;
  description->AutomaticallyCheckSpelling = true;
  description->AccessibleName = "About this application";

  const auto web = Add<Label>("StaticText5", 12,              {"", 0, 4,  40, 319, 300,  16});
  web->Text = kWebAddress;
  web->TextAlign = 1;
  web->MouseEnter = Handler(&AboutWindow::StaticText5_MouseEnter);
  web->MouseExit = Handler(&AboutWindow::StaticText5_MouseExit);
  web->MouseDown = Handler(&AboutWindow::StaticText5_MouseDown);

  const auto mail = Add<Label>("StaticText6", 12,             {"", 0, 5,  40, 300, 300,  16});
  mail->Text = kShownMailAddress;
  mail->TextAlign = 1;
  mail->MouseEnter = Handler(&AboutWindow::StaticText6_MouseEnter);
  mail->MouseExit = Handler(&AboutWindow::StaticText6_MouseExit);
  mail->MouseDown = Handler(&AboutWindow::StaticText6_MouseDown);

  const auto donate = Add<BevelButton>("BevelButton1",        {"", 0, 6,  40, 242, 300,  42});
  donate->Icon = paypal();
  donate->IconAlign = 1;
  donate->CaptionAlign = 3;
  donate->CaptionPlacement = 1;
  donate->AccessibleName = "Donate";
  donate->Action = Handler(&AboutWindow::BevelButton1_Action);

  const auto request = Add<Label>("StaticText7", 10,          {"", 0, 7,  40, 226, 300,  18});
  request->Text = "This application is free, but donate via PayPal if you'd like. ;-)";
  request->Multiline = true;
}
// clang-format on

void AboutWindow::StaticText5_MouseEnter(Ref<Label> label) {
  Highlight(*label);
}

void AboutWindow::StaticText5_MouseExit(Ref<Label> label) {
  Unhighlight(*label);
}

bool AboutWindow::StaticText5_MouseDown(Ref<Label> label, int, int) {
  return CloseAndOpen(label->Text);
}

bool AboutWindow::StaticText6_MouseDown(Ref<Label>, int, int) {
  return CloseAndOpen(kMailAddress);
}

void AboutWindow::StaticText6_MouseEnter(Ref<Label> label) {
  Highlight(*label);
}

void AboutWindow::StaticText6_MouseExit(Ref<Label> label) {
  Unhighlight(*label);
}

void AboutWindow::BevelButton1_Action(Ref<BevelButton>) {
  CloseAndOpen(kDonationAddress);
}

void AboutWindow::AddMenuHandlers() {
  _AddMenuHandler("FileClose", Handler(&AboutWindow::_FileClose_Action));
}

bool AboutWindow::Event_MouseDown(int, int) {
  Close();
  return false;
}

void AboutWindow::Event_Open() {}

bool AboutWindow::_FileClose_Action() {
  return false;
}
