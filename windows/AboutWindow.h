#pragma once

#include "framework/BevelButton.h"
#include "framework/Canvas.h"
#include "framework/Label.h"
#include "framework/Rectangle.h"
#include "framework/TextArea.h"
#include "framework/Window.h"

/// The About window: name, version, a short description, and three ways out to the outside world. It closes
/// at a click on its background and before any of its links opens.
class AboutWindow : public Window {
 public:
  void Layout() override;
  void CreateControls() override;
  virtual void _CreateControls0();

  virtual Ref<Rectangle> Rectangle1() { return Named<Rectangle>("Rectangle1"); }
  virtual Ref<Canvas> Canvas1() { return Named<Canvas>("Canvas1"); }
  virtual Ref<Label> StaticText1() { return Named<Label>("StaticText1"); }
  virtual Ref<Label> StaticText3() { return Named<Label>("StaticText3"); }
  virtual Ref<TextArea> EditField1() { return Named<TextArea>("EditField1"); }
  virtual Ref<Label> StaticText5() { return Named<Label>("StaticText5"); }
  virtual Ref<Label> StaticText6() { return Named<Label>("StaticText6"); }
  virtual Ref<BevelButton> BevelButton1() { return Named<BevelButton>("BevelButton1"); }
  virtual Ref<Label> StaticText7() { return Named<Label>("StaticText7"); }

  virtual void StaticText5_MouseEnter(Ref<Label> label);
  virtual void StaticText5_MouseExit(Ref<Label> label);
  virtual bool StaticText5_MouseDown(Ref<Label> label, int x, int y);
  virtual bool StaticText6_MouseDown(Ref<Label> label, int x, int y);
  virtual void StaticText6_MouseEnter(Ref<Label> label);
  virtual void StaticText6_MouseExit(Ref<Label> label);
  virtual void BevelButton1_Action(Ref<BevelButton> button);

  void AddMenuHandlers() override;
  bool Event_MouseDown(int x, int y) override;
  void Event_Open() override;
  virtual bool _FileClose_Action();
};

/// The About window, made if there is none.
Ref<AboutWindow> AboutWindow();
