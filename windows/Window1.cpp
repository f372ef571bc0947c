#include "windows/Window1.h"

#include "app/App.h"
#include "app/MenuBar1.h"
#include "framework/Shell.h"
#include "framework/Text.h"
#include "windows/Locks.h"
#include "windows/Window2.h"

namespace {

constexpr int kSettingsTab = 1;  // `Value` of the tab panel, which counts from 0

String ListCommandTitle() {
  return "Executing the command 'diskutil list'" + Chr(13) + "Please wait...";
}

}  // namespace

Ref<class Window1> Window1() {
  return ImplicitWindow<class Window1>("Window1.Window1");
}

void Window1::Layout() {
  MenuBar = MenuBar1();
  Title = "Dravik";
  Placement = kMainScreen;
  Width = 450, Height = 280;
  MinWidth = 450, MinHeight = 280;
  MaxWidth = 450, MaxHeight = 800;
  Resizeable = true, LiveResize = true;
  Composite = true;
  BackColor = RGB(0xCC, 0xCC, 0xCC);
}

void Window1::CreateControls() {
  _CreateControls0();
}

// clang-format off
void Window1::_CreateControls0() {
  //                                                            parent      panel tab left  top width height locks
  const auto tabs = Add<TabPanel>("TabPanel1", 12,             {"",             0, 0,  20,  14, 410, 246, L | T | R | B});
  tabs->TabDefinition = "'diskutil'" + Chr(13) + "Settings";
  tabs->Change = Handler(&Window1::TabPanel1_Change);

  Add<Rectangle>("Rectangle1",                                 {"TabPanel1",    1, 0,  37,  49, 379, 160, L | T | R | B});

  const auto table = Add<Listbox>("ListBox2", 12,              {"Rectangle1",   1, 0,  37,  75, 379, 134, L | T | R | B});
  table->ColumnCount = 4;
  table->ColumnWidths = "200,80,20,110";
  table->GridLinesHorizontal = 2;
  table->ColumnsResizable = true;
  table->AccessibleName = "Disks and partitions";
  table->BoldRowMeans = "mounted";
  table->ItalicRowMeans = "not mounted";
  table->AccessibleStart = "Scanning";
  table->AccessibleRows = "volume,volumes";
  table->DoubleClick = Handler(&Window1::ListBox2_DoubleClick);
  table->Change = Handler(&Window1::ListBox2_Change);

  const auto scan = Add<PushButton>("scanButton", 12,          {"TabPanel1",    1, 0,  37, 226,  80,  20, L | B});
  scan->Caption = "Scan";
  scan->Action = Handler(&Window1::scanButton_Action);

  const auto mount = Add<PushButton>("mountBtn", 12,           {"TabPanel1",    1, 2, 336, 226,  80,  20, R | B});
  mount->Caption = "Mount";
  mount->Default = true;
  mount->Enabled = false;
  mount->Action = Handler(&Window1::mountBtn_Action);

  const auto info = Add<PushButton>("infoBtn", 12,             {"TabPanel1",    1, 3, 129, 226,  80,  20, L | B});
  info->Caption = "Info...";
  info->Enabled = false;
  info->Action = Handler(&Window1::infoBtn_Action);

  const auto scanBox = Add<CheckBox>("CheckBoxScan", 12,       {"TabPanel1",    2, 0,  44,  80, 376,  20, L | T});
  scanBox->Caption = "Perform 'diskutil list' (scan) on startup";
  scanBox->State(1), scanBox->Value = true;

  const auto nameHeading = Add<Label>("StaticText1", 11,       {"TabPanel1",    1, 5,  41,  53, 138,  16, L | T});
  nameHeading->Text = "Disk/partition name";
  nameHeading->Bold = true, nameHeading->Italic = true;

  const auto identifierHeading = Add<Label>("StaticText2", 11, {"TabPanel1",    1, 6, 337,  53,  70,  16, L | T});
  identifierHeading->Text = "Identifier";
  identifierHeading->Bold = true, identifierHeading->Italic = true;

  const auto sizeHeading = Add<Label>("StaticText3", 11,       {"TabPanel1",    1, 7, 231,  53,  80,  16, L | T});
  sizeHeading->Text = "Size";
  sizeHeading->Bold = true, sizeHeading->Italic = true;
  sizeHeading->TextAlign = 2;
  table->AccessibleHeadings = nameHeading->Text + "," + sizeHeading->Text + ",," + identifierHeading->Text;

  const auto unMount = Add<PushButton>("unMountBtn", 12,       {"TabPanel1",    1, 4, 244, 226,  80,  20, L | B});
  unMount->Caption = "unMount";
  unMount->Enabled = false;
  unMount->Visible = false;
  unMount->Action = Handler(&Window1::unMountBtn_Action);

  const auto unMountBox = Add<CheckBox>("CheckBoxShowUnMount", 12, {"TabPanel1", 2, 1, 44, 120, 376,  20, L | T});
  unMountBox->Caption = "Show the \"unMount\" button";
  unMountBox->State(1), unMountBox->Value = true;

  const auto feedbackBox = Add<CheckBox>("CheckBoxShowFeedbackWin", 12, {"TabPanel1", 2, 2, 44, 184, 376, 20, L | T});
  feedbackBox->Caption = "Show the feedback win when performing Mount or unMount";
  feedbackBox->State(1), feedbackBox->Value = true;

  const auto hint = Add<Label>("StaticText4", 10,              {"TabPanel1",    2, 3,  62, 140, 358,  20, L | T});
  hint->Text = "Using this function may be slowen then ejecting using the Finder";
  unMountBox->AccessibleDescription = hint->Text;

  scanTheBus1_ = New<scanTheBus>();
  scanTheBus1_->Window = this;

  const auto lines = Add<Listbox>("ListBox1", 12,              {"",             0, 3, 411,   5,  28,  17, R | B});
  lines->Visible = false;
  lines->ColumnCount = 1;
  lines->HasHeading = true;
  lines->GridLinesHorizontal = 3;
  lines->ColumnsResizable = true;
}
// clang-format on

void Window1::TabPanel1_Change(Ref<TabPanel>) {
  if (TabPanel1()->Value == kSettingsTab) {
    CheckBoxScan()->Value = App()->scan;
    CheckBoxShowFeedbackWin()->Value = App()->showFeedbackWin;
    CheckBoxShowUnMount()->Value = App()->showUnMountBtn;
  } else {
    App()->scan = CheckBoxScan()->Value;
    App()->showFeedbackWin = CheckBoxShowFeedbackWin()->Value;
    App()->showUnMountBtn = CheckBoxShowUnMount()->Value;
  }
  if (TabPanel1()->Value == 0) unMountBtn()->Visible = App()->showUnMountBtn;
}

void Window1::ListBox2_DoubleClick(Ref<Listbox>) {
  mountThisDisk(ListBox2()->ListIndex());
}

/// The one place that enables and disables buttons: they keep telling the state at the moment of selection.
/// With no row selected the unMount button stays as it was.
void Window1::ListBox2_Change(Ref<Listbox>) {
  const int row = ListBox2()->ListIndex();
  if (row < 0) {
    mountBtn()->Enabled = false;
    infoBtn()->Enabled = false;
    return;
  }
  infoBtn()->Enabled = true;
  if (ListBox2()->CellBold(row, 0)) {
    mountBtn()->Enabled = false;
    unMountBtn()->Enabled = true;
  } else {
    mountBtn()->Enabled = true;
    unMountBtn()->Enabled = false;
  }
}

/// During a scan, `Run` raises an exception and nothing below it happens. The shell runs
/// nothing, deliberately: every handler that starts a command holds one, and the thread has its own.
void Window1::scanButton_Action(Ref<PushButton>) {
  const auto shell = New<Shell>();
  ListBox1()->DeleteAllRows();
  ListBox2()->DeleteAllRows();
  if (App()->showFeedbackWin) {
    Window2()->staticTitle()->Text = ListCommandTitle();
    Window2()->Show();
  }
  scanTheBus1()->Run();
  Window2()->Close();
}

void Window1::mountBtn_Action(Ref<PushButton>) {
  mountThisDisk(ListBox2()->ListIndex());
}

void Window1::unMountBtn_Action(Ref<PushButton>) {
  unMountThisDisk(ListBox2()->ListIndex());
}

void Window1::Event_Close() {
  Quit(0);
}

void Window1::Event_Open() {
  if (App()->scan) {
    if (App()->showFeedbackWin) {
      Window2()->staticTitle()->Text = ListCommandTitle();
      Window2()->Show();
    }
    scanTheBus1()->Run();
  }
  unMountBtn()->Visible = App()->showUnMountBtn;
}
