#pragma once

#include <QBasicTimer>

#include "framework/ProgressWheel.h"
#include "framework/qt/ControlView.h"

/// Spokes that fade in turn, by a timer that runs once they show.
class WheelView final : public ViewOf<ProgressWheel, QWidget> {
 public:
  using ViewOf::ViewOf;

 protected:
  void CopyOwn() override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer timer_;
  int step_ = 0;
};
