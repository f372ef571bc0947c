#pragma once

#include "disktool/scanTheBus.h"
#include "framework/CheckBox.h"
#include "framework/Label.h"
#include "framework/Listbox.h"
#include "framework/PushButton.h"
#include "framework/QuitMenuItem.h"
#include "framework/Rectangle.h"
#include "framework/TabPanel.h"
#include "framework/Window.h"

/// The main window: the disk table with its buttons on the first tab, the settings on the second. Closing it
/// ends the program.
///
/// All its state lives in its controls and in `App`. The hidden `ListBox1` holds the lines of a scan,
/// `ListBox2` the table made from them; a row's style, bold for mounted and italic for not mounted, is the
/// only record of a volume's state.
class Window1 : public Window {
 public:
  void Layout() override;
  void CreateControls() override;
  virtual void _CreateControls0();

  virtual Ref<TabPanel> TabPanel1() { return Named<TabPanel>("TabPanel1"); }
  virtual Ref<Rectangle> Rectangle1() { return Named<Rectangle>("Rectangle1"); }
  virtual Ref<Listbox> ListBox2() { return Named<Listbox>("ListBox2"); }
  virtual Ref<PushButton> scanButton() { return Named<PushButton>("scanButton"); }
  virtual Ref<PushButton> mountBtn() { return Named<PushButton>("mountBtn"); }
  virtual Ref<PushButton> infoBtn() { return Named<PushButton>("infoBtn"); }
  virtual Ref<CheckBox> CheckBoxScan() { return Named<CheckBox>("CheckBoxScan"); }
  virtual Ref<Label> StaticText1() { return Named<Label>("StaticText1"); }
  virtual Ref<Label> StaticText2() { return Named<Label>("StaticText2"); }
  virtual Ref<Label> StaticText3() { return Named<Label>("StaticText3"); }
  virtual Ref<PushButton> unMountBtn() { return Named<PushButton>("unMountBtn"); }
  virtual Ref<CheckBox> CheckBoxShowUnMount() { return Named<CheckBox>("CheckBoxShowUnMount"); }
  virtual Ref<CheckBox> CheckBoxShowFeedbackWin() { return Named<CheckBox>("CheckBoxShowFeedbackWin"); }
  virtual Ref<Label> StaticText4() { return Named<Label>("StaticText4"); }
  virtual Ref<scanTheBus> scanTheBus1() { return scanTheBus1_; }
  virtual Ref<Listbox> ListBox1() { return Named<Listbox>("ListBox1"); }

  virtual void TabPanel1_Change(Ref<TabPanel> tabPanel);
  virtual void ListBox2_DoubleClick(Ref<Listbox> list);
  virtual void ListBox2_Change(Ref<Listbox> list);
  virtual void scanButton_Action(Ref<PushButton> button);
  virtual void mountBtn_Action(Ref<PushButton> button);
  /// Shows the tool's whole report on the selected row in `Window3`.
  virtual void infoBtn_Action(Ref<PushButton> button);
  virtual void unMountBtn_Action(Ref<PushButton> button);

  virtual Ref<MenuItem> EditMenu() { return ItemNamed<MenuItem>("EditMenu"); }
  virtual Ref<AppleMenuItem> AppleAbout() { return ItemNamed<AppleMenuItem>("AppleAbout"); }
  virtual Ref<MenuItem> EditClear() { return ItemNamed<MenuItem>("EditClear"); }
  virtual Ref<MenuItem> EditPaste() { return ItemNamed<MenuItem>("EditPaste"); }
  virtual Ref<MenuItem> EditCopy() { return ItemNamed<MenuItem>("EditCopy"); }
  virtual Ref<MenuItem> EditCut() { return ItemNamed<MenuItem>("EditCut"); }
  virtual Ref<MenuItem> UntitledMenu0() { return ItemNamed<MenuItem>("UntitledMenu0"); }
  virtual Ref<MenuItem> EditUndo() { return ItemNamed<MenuItem>("EditUndo"); }
  virtual Ref<MenuItem> FileMenu() { return ItemNamed<MenuItem>("FileMenu"); }
  virtual Ref<QuitMenuItem> FileQuit() { return ItemNamed<QuitMenuItem>("FileQuit"); }
  virtual Ref<MenuItem> UntitledMenu1() { return ItemNamed<MenuItem>("UntitledMenu1"); }

  void Event_Close() override;
  void Event_Open() override;

  /// Makes a row of `ListBox2` from each line in `ListBox1` and asks the tool whether its volume is mounted.
  /// Runs on the scan thread.
  virtual void setUpDisks();
  /// Mounts the volume of the selected row and shows `row` as mounted.
  virtual void mountThisDisk(int row);
  /// Unmounts the volume of the selected row and shows `row` as not mounted.
  virtual void unMountThisDisk(int row);

 private:
  Ref<scanTheBus> scanTheBus1_;
};

/// The main window, made if there is none.
Ref<Window1> Window1();
