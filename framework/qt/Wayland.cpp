#include "framework/qt/Wayland.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindowStateChangeEvent>

namespace {

constexpr int kAnswerTime = 100;  // milliseconds

/// Weston asks a window in full screen that is to be maximised no more for a full screen of no size, and ends
/// the program at the window's next picture. Such a window leaves the full screen, and paints nothing until
/// that is answered.
void LeaveFullScreenOfNoSize(QWidget& window, Qt::WindowStates before) {
  if (!before.testFlag(Qt::WindowMaximized) || window.isMaximized() || !window.isFullScreen()) return;
  window.setUpdatesEnabled(false);
  QTimer::singleShot(kAnswerTime, &window, [&window] { window.setUpdatesEnabled(true); });
  window.setWindowState(Qt::WindowMaximized);
}

}  // namespace

bool IsWayland() {
  return QGuiApplication::platformName().startsWith("wayland");
}

void ObeyCompositor(QWidget& window, const QEvent& event) {
  if (!IsWayland()) return;
  window.setMinimumSize(0, 0);
  window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  if (event.type() == QEvent::WindowStateChange)
    LeaveFullScreenOfNoSize(window, static_cast<const QWindowStateChangeEvent&>(event).oldState());
}
