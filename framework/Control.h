#pragma once

#include <utility>
#include <vector>

#include "framework/Property.h"

/// Edges to which a control keeps its distance when its window is resized.
enum Locks : unsigned { kLockLeft = 1, kLockTop = 2, kLockRight = 4, kLockBottom = 8 };
constexpr Locks operator|(Locks a, Locks b) {
  return static_cast<Locks>(unsigned{a} | unsigned{b});
}

/// Where a control stands, as a row of a design table. Geometry is in pixels from the top left corner of the
/// window's content.
struct Place {
  const char* parent = "";  // the control it stands on, empty for the window itself
  int panel = 0;            // 0 for the window itself, else the tab, counted from 1
  int tabIndex = 0;
  int left = 0, top = 0, width = 0, height = 0;
  Locks locks = kLockLeft | kLockTop;
};

class Control;

/// What a control needs of the window it stands in.
class Container {
 public:
  virtual const std::vector<Ref<Control>>& Controls() const = 0;
  /// One of the controls is out of date.
  virtual void ControlChanged() = 0;
  /// A click that the control leaves to the window, at a place in the window's content.
  virtual void UserMouseDown(int x, int y) = 0;

 protected:
  ~Container() = default;
};

/// Base of everything that stands in a window. A control is made by its window and lives as long as it, or
/// longer while a handler holds it. Properties hold the truth, also those a platform has no use for; the
/// screen copies them.
class Control : public Viewed {
 public:
  void MarkStale() override;

  Property<String> Name{this};
  Property<String> InitialParent{this};
  Property<int> TabPanelIndex{this};
  Property<int> TabIndex{this};
  Property<int> Left{this}, Top{this}, Width{this}, Height{this};
  Property<bool> LockLeft{this}, LockTop{this}, LockRight{this}, LockBottom{this};
  Property<bool> Enabled{this, true};
  Property<bool> Visible{this, true};
  Property<bool> AutoDeactivate{this, true};
  Property<bool> TabStop{this, true};
  Property<String> HelpTag{this};
  /// What assistive technology calls the control; empty where its own text says it.
  Property<String> AccessibleName{this};
  /// More that it says of the control.
  Property<String> AccessibleDescription{this};

  void Apply(const Place& place);

  /// What it stands in; nullptr once the window has been closed.
  Container* StandsIn() const { return container_; }
  void StandIn(Container* container) { container_ = container; }

  /// True while a user can act on it: enabled, and showing in an open window, on a tab that is in front.
  bool Reachable() const { return container_ && Enabled && Visible && OnFrontPanel(); }

  /// The panel that shows in front, counted from 1, for a control that has panels; 0 for any other.
  virtual int FrontPanel() const { return 0; }

  /// The Return key in its window. True when the control takes it.
  virtual bool UserReturn() { return false; }

  /// Moves or grows with its window, by so many pixels, as its locks say.
  void FollowWindow(int wider, int higher);

  /// Whether a property changed since the last call.
  bool TakeStale() { return std::exchange(stale_, false); }

 private:
  bool OnFrontPanel() const;

  Container* container_ = nullptr;
  bool stale_ = true;
};

/// Base of the controls that show text.
class TextControl : public Control {
 public:
  Property<String> TextFont{this, "System"};
  Property<double> TextSize{this};  // pixels; 0 for the font's own size
  Property<int> TextUnit{this};     // 0, the platform's default unit
  Property<bool> Bold{this}, Italic{this}, Underline{this};
};
