#include "framework/Control.h"

void Control::MarkStale() {
  if (stale_) return;
  stale_ = true;
  if (window_) window_->ControlChanged();
}

void Control::Apply(const Place& place) {
  InitialParent = place.Parent;
  TabPanelIndex = place.Panel;
  TabIndex = place.TabIndex;
  Left = place.Left;
  Top = place.Top;
  Width = place.Width;
  Height = place.Height;
  LockLeft = (place.Lock & kLockLeft) != 0;
  LockTop = (place.Lock & kLockTop) != 0;
  LockRight = (place.Lock & kLockRight) != 0;
  LockBottom = (place.Lock & kLockBottom) != 0;
}

void Control::FollowWindow(int wider, int higher) {
  if (LockRight) {
    if (LockLeft)
      Width = Width + wider;
    else
      Left = Left + wider;
  }
  if (LockBottom) {
    if (LockTop)
      Height = Height + higher;
    else
      Top = Top + higher;
  }
}

bool Control::OnFrontPanel() const {
  if (TabPanelIndex == 0) return true;
  for (const auto& control : window_->Controls())
    if (const int front = control->FrontPanel()) return front == TabPanelIndex;
  return true;
}
