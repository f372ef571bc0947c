#pragma once

#include <QPoint>
#include <QWidget>

#include "framework/Control.h"
#include "framework/EventLoop.h"

/// What shows one control: a widget that is also this. It holds copies of the control's values, reads the
/// control in `Copy` alone, and brings the user's events back through `EventLoop::Deliver`. Qt's parent
/// owns it.
class ControlView {
 public:
  virtual ~ControlView() = default;

  /// The view of the right class for the control, nullptr for a class that nothing shows.
  static ControlView* Make(const Ref<Control>& control, QWidget& parent);

  virtual QWidget& Widget() = 0;
  /// The widget that takes the keyboard's focus.
  virtual QWidget& FocusWidget() { return Widget(); }

  /// Copies what the control holds now. With the baton. `origin` is where the widget's parent stands in the
  /// window's content.
  void Copy(QPoint origin);

 protected:
  virtual const Control& ShownControl() const = 0;
  /// Copies what only this class of control has.
  virtual void CopyOwn() = 0;
};

/// Base of the views: the widget, the control and what ties them.
template <class ControlClass, class WidgetClass>
class ViewOf : public WidgetClass, public ControlView {
 public:
  ViewOf(const Ref<ControlClass>& control, QWidget& parent) : WidgetClass(&parent), control_(control) {}

  QWidget& Widget() final { return *this; }

 protected:
  const Control& ShownControl() const final { return *control_; }

  /// Hands an event of the user to the control.
  template <class Event>
  void Deliver(Event event) const {
    EventLoop::Deliver([control = control_, event] { event(*control); });
  }

  const Ref<ControlClass> control_;
};
