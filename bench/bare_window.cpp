#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <cstdio>
#include <cstring>

#include "bench/BareWindow.h"
#include "bench/Clock.h"
#include "bench/Probe.h"

// The bare main window. Prints, as asked for by its argument, the time of its first picture or its memory
// after that.

namespace {

void AddMenus(QMenuBar& bar) {
  QMenu* file = bar.addMenu("&File");
  file->addAction("Quit")->setShortcut(QKeySequence("Ctrl+Q"));
  QMenu* edit = bar.addMenu("&Edit");
  edit->addAction("&Undo")->setShortcut(QKeySequence("Ctrl+Z"));
  edit->addSeparator();
  edit->addAction("Cu&t")->setShortcut(QKeySequence("Ctrl+X"));
  edit->addAction("&Copy")->setShortcut(QKeySequence("Ctrl+C"));
  edit->addAction("&Paste")->setShortcut(QKeySequence("Ctrl+V"));
  edit->addAction("Clear");
  edit->addAction("About Dravik…");
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const bool memory = argc == 2 && std::strcmp(argv[1], "memory") == 0;
  AfterFirstPaint([memory] {
    const double painted = Now();
    if (!memory) {
      std::printf("%.9f\n", painted);
      QApplication::quit();
      return;
    }
    AfterAMoment([] {
      std::printf("%ld\n", ProportionalMemory());
      QApplication::quit();
    });
  });
  QWidget window;
  window.setWindowTitle("Bare");
  QMenuBar bar(&window);
  AddMenus(bar);
  const int above = bar.sizeHint().height();
  bar.setGeometry(0, 0, 450, above);
  QWidget content(&window);
  content.setGeometry(0, above, 450, 280);
  AddBareControls(content);
  window.setFixedSize(450, 280 + above);
  window.move(287, 244);
  window.show();
  return QApplication::exec();
}
