#include "framework/qt/WindowView.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "framework/EventLoop.h"
#include "framework/qt/Accessibility.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/MenuKeys.h"
#include "framework/qt/Speaker.h"
#include "framework/qt/TabPanelView.h"
#include "framework/qt/Wayland.h"

namespace {

Qt::WindowFlags FlagsOf(const Window& window) {
  const auto box = [](bool there, Qt::WindowType hint) { return there ? hint : Qt::WindowFlags(); };
  const Qt::WindowFlags kind = window.Frame == Window::kDocument ? Qt::Window : Qt::Dialog;
  // The frame that Qt draws on Wayland has all boxes, whatever it is told.
  if (IsWayland() && !window.CloseButton) return kind | Qt::FramelessWindowHint;
  return kind | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
         box(window.CloseButton, Qt::WindowCloseButtonHint) |
         box(window.MinimizeButton, Qt::WindowMinimizeButtonHint) |
         box(window.MaximizeButton, Qt::WindowMaximizeButtonHint);
}

}  // namespace

WindowView::WindowView(const Ref<Window>& window, WindowView* owner, const MenuView::Front& front)
    : window_(window), owner_(owner), voice_(*this, window) {
  SetFlags(owner);
  if (window->MenuBar && !kOneBarForAll) {
    bar_ = new QMenuBar(this);
    menus_ = std::make_unique<MenuView>(*bar_, window->MenuBar, front);
    OnKey(*this, Qt::Key_F10, [this] { EnterMenus(*bar_); });
  } else if (owner && owner->menus_) {
    addActions(owner->menus_->Actions());
    if (!isModal()) BorrowMenuKeys(*this, *owner->bar_);
  }
  Copy();
}

void WindowView::SetFlags(WindowView* owner) {
  setWindowFlags(FlagsOf(*window_));
  if (window_->Frame == Window::kMovableModal) setWindowModality(Qt::ApplicationModal);
  if (window_->Frame == Window::kDocument || !owner) return;
  create();
  windowHandle()->setTransientParent(owner->windowHandle());
}

void WindowView::Copy() {
  if (menus_) menus_->Copy();
  voice_.SayWork();
  if (window_->TakeStale()) CopyParts();
  voice_.EndUpdate();
}

void WindowView::CopyParts() {
  CopyTitle();
  CopyGeometry();
  content_.Copy();
  CopyShown();
  const bool speaks = owner_ && isVisible() && testAttribute(Qt::WA_ShowWithoutActivating);
  if (speaks && SomebodyListens()) voice_.SayWords(*owner_, LabelTexts());
}

void WindowView::CopyTitle() {
  // Qt writes the program's name over a window that has no title. A blank stays a blank.
  const QString title = OneLine(window_->Title);
  setWindowTitle(title.isEmpty() ? QString(' ') : title);
  const QWindow* owner = windowHandle() ? windowHandle()->transientParent() : nullptr;
  if (title.isEmpty() && owner) SetAccessibleName(*this, owner->title());
}

void WindowView::CopyGeometry() {
  const int above = std::exchange(above_, BarHeight());
  CopyLimits();
  const QRect wanted(window_->Left, window_->Top, window_->Width, window_->Height);
  if (wanted == known_ && above == above_) return;
  setGeometry(wanted.adjusted(0, -above_, 0, 0));
  PlaceParts();
}

void WindowView::CopyLimits() {
  const QSize size(window_->Width, window_->Height);
  minimum_ = window_->Resizeable ? QSize(window_->MinWidth, window_->MinHeight) : size;
  maximum_ = window_->Resizeable ? QSize(window_->MaxWidth, window_->MaxHeight) : size;
  if (IsWayland()) return;  // there the content alone keeps to the limits
  setMinimumSize(minimum_.width(), minimum_.height() + above_);
  setMaximumSize(maximum_.width(), maximum_.height() + above_);
}

void WindowView::CopyShown() {
  if (!isVisible()) {
    // A window with nothing to type into or to press leaves the focus where it is, also where the window
    // manager would give it to every new one.
    QWidget* first = content_.FirstFocus();
    setAttribute(Qt::WA_ShowWithoutActivating, !first);
    create();
    windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, !first);
    if (first) first->setFocus();
    show();
  }
  if (window_->Shows() == std::exchange(shows_, window_->Shows())) return;
  raise();
  if (!testAttribute(Qt::WA_ShowWithoutActivating)) activateWindow();
}

int WindowView::BarHeight() const {
  if (!bar_ || bar_->isNativeMenuBar()) return 0;
  return std::max(bar_->sizeHint().height(), bar_->heightForWidth(window_->Width));
}

void WindowView::PlaceParts() {
  if (bar_) bar_->setGeometry(0, 0, width(), above_);
  content_.setGeometry(QRect({0, above_}, ContentSize()));
}

QSize WindowView::ContentSize() const {
  return QSize(width(), height() - above_).expandedTo(minimum_).boundedTo(maximum_);
}

/// Later, as the size or place may be one that was asked for just now and could not be had.
void WindowView::ReportGeometry() {
  QTimer::singleShot(0, this, [this] {
    const QRect now(geometry().topLeft() + QPoint(0, above_), ContentSize());
    if (now == std::exchange(known_, now)) return;
    EventLoop::Record([window = window_, now] {
      window->UserMove(now.x(), now.y());
      window->UserResize(now.width(), now.height());
    });
  });
}

void WindowView::resizeEvent(QResizeEvent*) {
  PlaceParts();
  ReportGeometry();
}

void WindowView::moveEvent(QMoveEvent*) {
  ReportGeometry();
}

/// A new font, palette or style of the desktop is taken over as if all had changed.
void WindowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  ObeyCompositor(*this, *event);
  constexpr QEvent::Type kLooks[] = {QEvent::FontChange, QEvent::PaletteChange, QEvent::StyleChange};
  if (std::ranges::find(kLooks, event->type()) == std::end(kLooks)) return;
  QTimer::singleShot(0, this, [this] {
    EventLoop::Record([window = window_] {
      for (const auto& control : window->Controls()) control->MarkStale();
    });
  });
}

void WindowView::closeEvent(QCloseEvent* event) {
  event->ignore();
  EventLoop::Deliver([window = window_] { window->UserClose(); });
}

void WindowView::paintEvent(QPaintEvent*) {
  painted_ = true;
}

void WindowView::keyPressEvent(QKeyEvent* event) {
  TabPanelView* const tabs = content_.Tabs();
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && !event->isAutoRepeat())
    EventLoop::Deliver([window = window_] { window->UserReturn(); });
  else if (tabs && event->matches(QKeySequence::NextChild))
    tabs->Step(+1);
  else if (tabs && event->matches(QKeySequence::PreviousChild))
    tabs->Step(-1);
  else
    QWidget::keyPressEvent(event);
}

void WindowView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint position = event->position().toPoint() - content_.pos();
  EventLoop::Deliver([window = window_, position] { window->UserMouseDown(position.x(), position.y()); });
}
