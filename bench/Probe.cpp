#include "bench/Probe.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <memory>

namespace {

constexpr int kMoment = 300;  // milliseconds

class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(std::function<void()> then) : then_(std::move(then)) {}

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::Paint || !then_ || !object->isWidgetType()) return false;
    if (!static_cast<QWidget*>(object)->isWindow()) return false;
    // Painting goes into a buffer, which is on its way to the screen when this event is over.
    QMetaObject::invokeMethod(
        qApp, [then = std::exchange(then_, nullptr)] { then(); }, Qt::QueuedConnection);
    return false;
  }

 private:
  std::function<void()> then_;
};

}  // namespace

long ProportionalMemory() {
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen("/proc/self/smaps_rollup", "r"), std::fclose);
  long kilobytes = -1;
  char line[256];
  while (file && std::fgets(line, sizeof line, file.get()))
    if (std::sscanf(line, "Pss: %ld", &kilobytes) == 1) break;
  return kilobytes;
}

void AfterFirstPaint(std::function<void()> then) {
  auto* watch = new PaintWatch(std::move(then));
  watch->setParent(qApp);
  qApp->installEventFilter(watch);
}

void AfterAMoment(std::function<void()> then) {
  QTimer::singleShot(kMoment, qApp, std::move(then));
}
