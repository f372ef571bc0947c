#include "bench/BareWindow.h"

#include <QCheckBox>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

namespace {

QFont FontOf(int pixels) {
  QFont font;
  font.setPixelSize(pixels);
  return font;
}

/// In the place of the tabs, whatever room their style leaves for one.
QWidget* AddPage(QTabWidget& tabs, int number) {
  auto* page = new QWidget(&tabs);
  page->setGeometry(0, 25, tabs.width(), tabs.height() - 25);
  page->setVisible(tabs.currentIndex() == number);
  QObject::connect(&tabs, &QTabWidget::currentChanged, page,
                   [=](int tab) { page->setVisible(tab == number); });
  return page;
}

void AddHeading(QWidget& page, const char* text, QRect place, Qt::Alignment alignment = {}) {
  auto* label = new QLabel(text, &page);
  QFont font = FontOf(11);
  font.setBold(true);
  font.setItalic(true);
  label->setFont(font);
  label->setAlignment(alignment | Qt::AlignVCenter);
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
  table->setFrameShape(QFrame::Box);
  table->setFrameShadow(QFrame::Plain);
  table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setGeometry(place);
}

}  // namespace

void AddBareControls(QWidget& content) {
  auto* tabs = new QTabWidget(&content);
  tabs->setFont(FontOf(12));
  tabs->setGeometry(20, 14, 410, 246);
  tabs->addTab(new QWidget, "'diskutil'");
  tabs->addTab(new QWidget, "Settings");
  QWidget* const disks = AddPage(*tabs, 0);
  QWidget* const settings = AddPage(*tabs, 1);

  auto* frame = new QFrame(disks);
  frame->setFrameShape(QFrame::Box);
  frame->setAutoFillBackground(true);
  frame->setPalette(QPalette(Qt::white));
  frame->setGeometry(17, 10, 379, 160);
  AddTable(*disks, {17, 36, 379, 134});
  AddHeading(*disks, "Disk/partition name", {21, 14, 138, 16});
  AddHeading(*disks, "Identifier", {317, 14, 70, 16});
  AddHeading(*disks, "Size", {211, 14, 80, 16}, Qt::AlignRight);
  AddButton(*disks, "Scan", {17, 187, 80, 20}, true);
  AddButton(*disks, "Mount", {316, 187, 80, 20}, false);
  AddButton(*disks, "Info...", {109, 187, 80, 20}, false);

  AddBox(*settings, "Perform 'diskutil list' (scan) on startup", {24, 41, 376, 20});
  AddBox(*settings, "Show the \"unMount\" button", {24, 81, 376, 20});
  AddBox(*settings, "Show the feedback win when performing Mount or unMount", {24, 145, 376, 20});
  auto* hint = new QLabel("Using this function may be slowen then ejecting using the Finder", settings);
  hint->setFont(FontOf(10));
  hint->setGeometry(42, 100, 358, 20);
}
