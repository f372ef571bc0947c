#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <cstdio>
#include <cstring>

#include "bench/Clock.h"
#include "bench/Probe.h"

// The controls of Dravik's main window with nothing behind them. Prints, as asked for by its argument, the
// time of its first picture or its memory after that.

namespace {

QFont FontOf(int pixels) {
  QFont font;
  font.setPixelSize(pixels);
  return font;
}

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

void AddHeading(QWidget& page, const char* text, QRect place) {
  auto* label = new QLabel(text, &page);
  QFont font = FontOf(11);
  font.setBold(true);
  font.setItalic(true);
  label->setFont(font);
  label->setGeometry(place);
}

void AddButton(QWidget& page, const char* text, QRect place, bool enabled) {
  auto* button = new QPushButton(text, &page);
  button->setFont(FontOf(12));
  button->setEnabled(enabled);
  button->setGeometry(place);
}

void AddBox(QWidget& page, const char* text, QRect place) {
  auto* box = new QCheckBox(text, &page);
  box->setFont(FontOf(12));
  box->setGeometry(place);
}

void AddTable(QWidget& parent, QRect place) {
  constexpr int kColumns = 4;
  auto* table = new QTableWidget(0, kColumns, &parent);
  table->setFont(FontOf(12));
  table->horizontalHeader()->hide();
  table->verticalHeader()->hide();
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setGeometry(place);
}

void AddControls(QWidget& content) {
  auto* tabs = new QTabWidget(&content);
  tabs->setFont(FontOf(12));
  tabs->setGeometry(20, 14, 410, 246);
  auto* disks = new QWidget;
  auto* settings = new QWidget;
  tabs->addTab(disks, "'diskutil'");
  tabs->addTab(settings, "Settings");

  auto* frame = new QFrame(disks);
  frame->setFrameShape(QFrame::Box);
  frame->setAutoFillBackground(true);
  frame->setPalette(QPalette(Qt::white));
  frame->setGeometry(17, 10, 379, 160);
  AddTable(*disks, {17, 36, 379, 134});
  AddHeading(*disks, "Disk/partition name", {21, 14, 138, 16});
  AddHeading(*disks, "Identifier", {317, 14, 70, 16});
  AddHeading(*disks, "Size", {211, 14, 80, 16});
  AddButton(*disks, "Scan", {17, 187, 80, 20}, true);
  AddButton(*disks, "Mount", {316, 187, 80, 20}, false);
  AddButton(*disks, "Info...", {109, 187, 80, 20}, false);

  AddBox(*settings, "Perform 'diskutil list' (scan) on startup", {24, 40, 376, 20});
  AddBox(*settings, "Show the \"unMount\" button", {24, 80, 376, 20});
  AddBox(*settings, "Show the feedback win when performing Mount or unMount", {24, 144, 376, 20});
  auto* hint = new QLabel("Using this function may be slowen then ejecting using the Finder", settings);
  hint->setFont(FontOf(10));
  hint->setGeometry(42, 100, 358, 20);
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
  AddControls(content);
  window.setFixedSize(450, 280 + above);
  window.move(287, 244);
  window.show();
  return QApplication::exec();
}
