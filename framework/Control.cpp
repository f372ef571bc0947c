#include "framework/Control.h"

void Control::MarkStale() {
  if (stale_) return;
  stale_ = true;
  if (container_) container_->ControlChanged();
}

void Control::Apply(const Place& place) {
  InitialParent = place.parent;
  TabPanelIndex = place.panel;
  TabIndex = place.tabIndex;
  Left = place.left;
  Top = place.top;
  Width = place.width;
  Height = place.height;
  LockLeft = (place.locks & kLockLeft) != 0;
  LockTop = (place.locks & kLockTop) != 0;
  LockRight = (place.locks & kLockRight) != 0;
  LockBottom = (place.locks & kLockBottom) != 0;
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
  for (const auto& control : container_->Controls())
    if (const int front = control->FrontPanel()) return front == TabPanelIndex;
  return true;
}
