#pragma once

#include <QString>
#include <QWidget>

#include "framework/Window.h"

/// Says to assistive technology what a person sees happen in one window.
class WindowVoice {
 public:
  WindowVoice(QWidget& view, const Ref<Window>& window) : view_(view), window_(window) {}

  /// Says when the window's work begins and what it ends with. With the baton, at the start of each update of
  /// the screen.
  void SayWork();
  void EndUpdate();

  /// Says, on behalf of the owner, the words of a window that takes no focus.
  void SayWords(QWidget& owner, const QString& words);

 private:
  QWidget& view_;
  const Ref<Window> window_;
  QString said_;
  bool working_ = false;  // a thread of the window runs
  int timesSaid_ = 0;     // by any window, as of the last update
};
