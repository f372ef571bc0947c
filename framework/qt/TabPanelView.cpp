#include "framework/qt/TabPanelView.h"

#include <QApplication>
#include <QPainter>
#include <QSignalBlocker>

#include "framework/qt/Conversions.h"
#include "framework/qt/Painting.h"

void Tabs::paintEvent(QPaintEvent* event) {
  constexpr int kInside = 4;
  QTabBar::paintEvent(event);
  PaintFocusRing(*this, tabRect(currentIndex()).adjusted(kInside, kInside, -kInside, -kInside));
}

void Tabs::initStyleOption(QStyleOptionTab* option, int tab) const {
  QTabBar::initStyleOption(option, tab);
  option->features |= QStyleOptionTab::HasFrame;  // as Qt tells it of the tabs of its own panels
}

TabPanelView::TabPanelView(const Ref<TabPanel>& control, QWidget& parent)
    : ViewOf(control, parent), bar_(this) {
  bar_.setDrawBase(false);
  bar_.setExpanding(false);
  connect(&bar_, &QTabBar::currentChanged, this,
          [this](int tab) { Deliver([tab](TabPanel& panel) { panel.UserSelect(tab); }); });
}

QWidget& TabPanelView::Page(int panel) {
  return *pages_[static_cast<std::size_t>(panel - 1)];
}

void TabPanelView::Step(int tabs) {
  bar_.setCurrentIndex((bar_.currentIndex() + tabs + bar_.count()) % bar_.count());
}

void TabPanelView::CopyOwn() {
  const QSignalBlocker blocker(bar_);
  bar_.setFont(FontOf(*control_));
  MakePages();
  bar_.setCurrentIndex(control_->Value);
  ShowPages();
  PlaceBar();
}

void TabPanelView::MakePages() {
  if (!pages_.empty()) return;
  for (const String& caption : control_->Captions()) {
    bar_.addTab(Literal(caption));
    pages_.push_back(new TabPage(this));
    pages_.back()->setAccessibleName(OneLine(caption));
  }
  bar_.raise();  // the pages are as large as the whole
}

void TabPanelView::ShowPages() {
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    QWidget* page = pages_[i];
    const bool front = static_cast<int>(i) == bar_.currentIndex();
    // The focus goes to the tabs, not to whatever comes next in the window.
    if (!front && page->isAncestorOf(QApplication::focusWidget())) bar_.setFocus();
    page->setGeometry(rect());
    page->setVisible(front);
  }
}

QStyleOptionTabWidgetFrame TabPanelView::FrameOption() const {
  QStyleOptionTabWidgetFrame option;
  option.initFrom(this);
  option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  option.leftCornerWidgetSize = option.rightCornerWidgetSize = QSize(0, 0);  // left unset they move the bar
  option.tabBarSize = bar_.sizeHint().boundedTo({width(), height()});
  option.tabBarRect = bar_.geometry();
  option.selectedTabRect = bar_.tabRect(bar_.currentIndex()).translated(bar_.pos());
  return option;
}

void TabPanelView::PlaceBar() {
  const QStyleOptionTabWidgetFrame option = FrameOption();
  bar_.setGeometry(style()->subElementRect(QStyle::SE_TabWidgetTabBar, &option, this));
}

void TabPanelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOptionTabWidgetFrame option = FrameOption();
  option.rect = style()->subElementRect(QStyle::SE_TabWidgetTabPane, &option, this);
  style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, this);
}
