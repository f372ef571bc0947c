#pragma once

#include "framework/Label.h"
#include "framework/PushButton.h"
#include "framework/TextArea.h"
#include "framework/Window.h"

/// The information window: the tool's whole report on one disk or partition. Whoever opens it fills it; the
/// user may type into the report, which is lost with the window.
class Window3 : public Window {
 public:
  void Layout() override;
  void CreateControls() override;
  virtual void _CreateControls0();

  virtual Ref<PushButton> PushButton1() { return Named<PushButton>("PushButton1"); }
  virtual Ref<Label> staticTitle() { return Named<Label>("staticTitle"); }
  virtual Ref<TextArea> infoFld() { return Named<TextArea>("infoFld"); }

  virtual void PushButton1_Action(Ref<PushButton> button);
  void Event_Open() override;
};

/// The information window, made if there is none.
Ref<Window3> Window3();
