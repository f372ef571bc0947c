#include "framework/Control.h"

#include <algorithm>

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
  return TabPanelIndex == 0 || std::ranges::any_of(container_->Controls(), [this](const auto& control) {
           return control->FrontPanel() == TabPanelIndex;
         });
}
