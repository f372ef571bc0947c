#include "framework/qt/WindowVoice.h"

#include <QStringList>
#include <utility>

#include "framework/EventLoop.h"
#include "framework/Listbox.h"
#include "framework/Thread.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/Speaker.h"

void WindowVoice::SayWork() {
  const bool working = Thread::RunsFor(*window_);
  const bool changed = working != std::exchange(working_, working);
  // A window that has come up for the work says the start itself.
  const bool alreadySaid = TimesSaid() != timesSaid_;
  for (const auto& control : window_->Controls()) {
    const auto list = changed ? Cast<Listbox>(control) : nullptr;
    if (!list || EventLoop::Quitting()) continue;
    const QStringList rows = OneLine(list->AccessibleRows).split(',');
    const QString start = OneLine(list->AccessibleStart);
    if (working && !alreadySaid && !start.isEmpty()) Say(view_, start);
    if (!working && rows.size() == 2)
      Say(view_, QString("%1 %2").arg(list->ListCount()).arg(rows[list->ListCount() == 1 ? 0 : 1]));
  }
}

void WindowVoice::EndUpdate() {
  timesSaid_ = TimesSaid();
}

void WindowVoice::SayWords(QWidget& owner, const QString& words) {
  if (words != said_) Say(owner, words);
  said_ = words;
}
