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
  while (static_cast<int>(pages_.size()) < panel) {
    auto* page = new TabPage(this);
    page->setGeometry(rect());
    page->setAccessibleName(bar_.tabText(static_cast<int>(pages_.size())).replace("&&", "&"));
    page->setVisible(static_cast<int>(pages_.size()) == bar_.currentIndex());
    pages_.push_back(page);
    bar_.raise();
  }
  return *pages_[static_cast<std::size_t>(panel - 1)];
}

void TabPanelView::Step(int tabs) {
  if (bar_.count() > 0) bar_.setCurrentIndex((bar_.currentIndex() + tabs + bar_.count()) % bar_.count());
}

void TabPanelView::CopyOwn() {
  const QSignalBlocker blocker(bar_);
  bar_.setFont(FontOf(*control_));
  CopyCaptions();
  bar_.setCurrentIndex(control_->Value);
  ShowPages();
  PlaceBar();
  update();
}

void TabPanelView::CopyCaptions() {
  const auto captions = control_->Captions();
  const int count = static_cast<int>(captions.size());
  while (bar_.count() > count) bar_.removeTab(bar_.count() - 1);
  while (bar_.count() < count) bar_.addTab({});
  for (int tab = 0; tab < count; ++tab)
    bar_.setTabText(tab, Literal(captions[static_cast<std::size_t>(tab)]));
}

void TabPanelView::ShowPages() {
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    QWidget* page = pages_[i];
    const bool front = static_cast<int>(i) == bar_.currentIndex();
    // The focus goes to the tabs, not to whatever comes next in the window.
    if (!front && page->isAncestorOf(QApplication::focusWidget())) bar_.setFocus();
    page->setVisible(front);
  }
}

QStyleOptionTabWidgetFrame TabPanelView::FrameOption() const {
  QStyleOptionTabWidgetFrame option;
  option.initFrom(this);
  option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  option.shape = bar_.shape();
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

void TabPanelView::resizeEvent(QResizeEvent*) {
  PlaceBar();
  for (QWidget* page : pages_) page->setGeometry(rect());
}

void TabPanelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOptionTabWidgetFrame option = FrameOption();
  option.rect = style()->subElementRect(QStyle::SE_TabWidgetTabPane, &option, this);
  style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, this);
}
