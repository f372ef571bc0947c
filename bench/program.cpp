#include <QApplication>
#include <QTableView>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "app/App.h"
#include "app/MenuBar1.h"
#include "app/Startup.h"
#include "bench/Clicks.h"
#include "bench/Clock.h"
#include "bench/Probe.h"
#include "disktool/scanTheBus.h"
#include "framework/Application.h"
#include "framework/Callback.h"
#include "framework/EventLoop.h"
#include "windows/Window1.h"

// Dravik itself, with a driver linked in, and with the tool that PATH finds. Prints what its argument asks
// for:
//
//     first-paint   the time of the first picture of the main window
//     memory        its memory, in kilobytes, after the first scan
//     scan          the seconds of a scan, from the start of its thread until that has done its work
//     clicks        the seconds of the slowest of 100 clicks during a scan that hangs
//     report        the seconds from a press of Info... until its report is on the screen
//
// BENCH_ROWS says how many rows a scan brings.

namespace {

int ExpectedRows() {
  const char* rows = std::getenv("BENCH_ROWS");
  return rows ? std::atoi(rows) : 0;
}

/// The scan with a watch.
class TimedScan : public scanTheBus {
 public:
  void Run() override {
    started_ = Now();
    scanTheBus::Run();
  }

 protected:
  void Event_Run() override {
    scanTheBus::Event_Run();
    std::printf("%.9f\n", Now() - started_);
    Quit(0);
  }

 private:
  double started_ = 0;
};

void QuitSoon() {
  EventLoop::Deliver([] { Quit(0); });
}

void PrintFirstPaint() {
  std::printf("%.9f\n", Now());
  QuitSoon();
}

/// Calls `then` a moment after the table has so many rows.
void WhenTableHas(int rows, const std::function<void()>& then) {
  auto* timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, timer, [=] {
    bool there = false;
    EventLoop::Record([&] { there = Window1()->ListBox2()->ListCount() == rows; });
    if (!there) return;
    timer->stop();
    AfterAMoment(then);
  });
  timer->start(20);
}

void PrintMemory() {
  WhenTableHas(ExpectedRows(), [] {
    std::printf("%ld\n", ProportionalMemory());
    QuitSoon();
  });
}

void Scan() {
  AfterAMoment([] {
    EventLoop::Deliver([] {
      static Ref<TimedScan> scan;
      scan = New<TimedScan>();
      scan->Run();
    });
  });
}

std::vector<QPoint> PlacesOfRows(int rows) {
  std::vector<QPoint> places;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const auto* table = window->findChild<QTableView*>();
    if (!table || !window->isVisible()) continue;
    for (int row = 0; row < rows; ++row) {
      const QRect cell = table->visualRect(table->model()->index(row, 0));
      places.push_back(table->viewport()->mapToGlobal(cell.center()));
    }
  }
  return places;
}

void Click() {
  constexpr int kClicks = 100;
  constexpr int kRowsBeforeTheHang = 3;
  WhenTableHas(kRowsBeforeTheHang, [] {
    static std::optional<Clicks> clicks;
    clicks.emplace(PlacesOfRows(2));
    EventLoop::Record([] {
      const auto table = Window1()->ListBox2();
      table->Change = [handler = table->Change](const Ref<Listbox>& list) {
        handler(list);
        clicks->Handled();
      };
    });
    clicks->Start(kClicks, [](double longest) {
      std::printf("%.9f\n", longest);
      QMetaObject::invokeMethod(qApp, QuitSoon, Qt::QueuedConnection);
    });
  });
}

void Report() {
  WhenTableHas(ExpectedRows(), [] {
    EventLoop::Record([] {
      const auto table = Window1()->ListBox2();
      table->UserSelect(0, table->Generation());
    });
    const double began = Now();
    EventLoop::Deliver([] { Window1()->infoBtn_Action(Window1()->infoBtn()); });
    QCoreApplication::processEvents();
    std::printf("%.9f\n", Now() - began);
    QuitSoon();
  });
}

std::function<void()> Asked(std::string_view word) {
  if (word == "first-paint") return PrintFirstPaint;
  if (word == "memory") return PrintMemory;
  if (word == "scan") return Scan;
  if (word == "clicks") return Click;
  if (word == "report") return Report;
  return nullptr;
}

void OpenMainWindow() {
  _LateStartup();
}

/// The setting is saved at the end, and the next run is to find it as it was.
void OpenMainWindowWithoutScan() {
  App()->scan = false;
  _LateStartup();
  App()->scan = true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view word = argc == 2 ? argv[1] : "";
  const auto asked = Asked(word);
  if (!asked) return 2;
  Application::Start(argc, argv);
  InstallCallbackRoutine(_CallFunctionWithExceptionHandling);
  _EarlyStartup();
  AfterFirstPaint(asked);
  Application::RunFrameworkInitialization(word == "scan" ? OpenMainWindowWithoutScan : OpenMainWindow);
  Application::RunEventLoop();
  ReleaseMenuBar1();
  return Application::Shutdown();
}
