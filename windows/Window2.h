#pragma once

#include "framework/Canvas.h"
#include "framework/Label.h"
#include "framework/ProgressWheel.h"
#include "framework/Window.h"

/// The feedback window: tells that a command is running. Its callers write its texts, show it and close it,
/// also when it is not open: then the close makes an instance and ends it at once.
class Window2 : public Window {
 public:
  void Layout() override;
  void CreateControls() override;
  virtual void _CreateControls0();

  virtual Ref<Label> StaticText1() { return Named<Label>("StaticText1"); }
  virtual Ref<ProgressWheel> ChasingArrows1() { return Named<ProgressWheel>("ChasingArrows1"); }
  virtual Ref<Canvas> Canvas1() { return Named<Canvas>("Canvas1"); }
  virtual Ref<Label> staticTitle() { return Named<Label>("staticTitle"); }

  void Event_Open() override;
};

/// The feedback window, made if there is none.
Ref<Window2> Window2();
