#include "framework/qt/ListView.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "framework/qt/Accessibility.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/Painting.h"
#include "framework/qt/RectangleView.h"
#include "framework/qt/RowDelegate.h"
#include "framework/qt/Speaker.h"

namespace {

constexpr int kLeading = 4;       // pixels between the lines of text
constexpr int kLeastHeight = 18;  // of a row

Qt::PenStyle LineStyle(int gridLines) {
  constexpr int kThinDotted = 2;
  constexpr int kThinSolid = 3;
  return gridLines == kThinDotted ? Qt::DotLine : gridLines == kThinSolid ? Qt::SolidLine : Qt::NoPen;
}

}  // namespace

ListView::ListView(const Ref<Listbox>& control, QWidget& parent) : ViewOf(control, parent) {
  setBackgroundRole(QPalette::Base);  // under the frame too, where a rectangle below would shine through
  setAutoFillBackground(true);
  setModel(&model_);
  setItemDelegate(new RowDelegate(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  horizontalHeader()->hide();
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  horizontalHeader()->setMinimumSectionSize(1);
  viewport()->setMouseTracking(true);
}

void ListView::CopyOwn() {
  CopyAppearance();
  model_.Copy(*control_);
  generation_ = control_->Generation();
  for (const int row : model_.RowsWithNewMeaning())
    Say(*window(), model_.index(row, 0).data(Qt::AccessibleTextRole).toString());
  columns_.SetWidths(control_->ColumnWidths);
  CopySelection();
  // Qt leaves the layout to the painting of the frame, which is too late for the rows to be painted too.
  executeDelayedItemsLayout();
}

void ListView::CopyAppearance() {
  setFont(FontOf(*control_));
  model_.SetFont(font());
  verticalHeader()->setDefaultSectionSize(std::max(fontMetrics().height() + kLeading, kLeastHeight));
  ringColor_ = ColorAround(*control_);
  rowLines_ = LineStyle(control_->GridLinesHorizontal);
}

void ListView::CopySelection() {
  reportedRow_ = control_->ListIndex();
  if (reportedRow_ != SelectedRow())
    selectionModel()->setCurrentIndex(model_.index(reportedRow_, 0),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

int ListView::SelectedRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.front().row();
}

void ListView::ReportSelection() {
  const int row = SelectedRow();
  if (std::exchange(reportedRow_, row) != row)
    Deliver([row, generation = generation_](Listbox& list) { list.UserSelect(row, generation); });
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  // The selection model is in the middle of its change. What comes by mouse or key is reported at the end of
  // that event, what comes another way soon.
  QTimer::singleShot(0, this, [this] { ReportSelection(); });
}

void ListView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                           const QList<int>& roles) {
  QTableView::dataChanged(topLeft, bottomRight, roles);
  // What a row's style means is part of its name. Rows change one at a time.
  AnnounceRow(*this, topLeft.row(), QAccessible::NameChanged);
}

void ListView::AnnounceFocus() {
  if (hasFocus() && SelectedRow() >= 0) AnnounceRow(*this, SelectedRow(), QAccessible::Focus);
}

bool ListView::event(QEvent* event) {
  const bool result = QTableView::event(event);
  // Qt tells that the list has the focus, and does so after this event.
  if (event->type() == QEvent::FocusIn) QTimer::singleShot(0, this, [this] { AnnounceFocus(); });
  if (event->type() == QEvent::Paint) PaintFrame();
  if (event->isInputEvent()) ReportSelection();
  return result;
}

bool ListView::viewportEvent(QEvent* event) {
  const bool result = QTableView::viewportEvent(event);
  if (event->isInputEvent()) ReportSelection();
  return result;
}

/// A list in a rectangle has the rectangle's frame instead of the style's.
void ListView::PaintFrame() {
  if (ringColor_.isValid()) {
    QPainter painter(this);
    PaintRing(painter, rect(), ringColor_, ringColor_);
  }
  PaintFocusRing(*this, rect());
}

void ListView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  QPainter painter(viewport());
  QColor color = palette().color(QPalette::Text);
  color.setAlphaF(0.35f);
  QPen pen(color, 1, rowLines_);
  pen.setCapStyle(Qt::FlatCap);  // a dot is as long as it is wide
  painter.setPen(pen);
  const int height = verticalHeader()->defaultSectionSize();
  const int end = std::min(verticalHeader()->length() - verticalOffset(), viewport()->height());
  for (int y = height - 1 - verticalOffset() % height; y < end; y += height)
    painter.drawLine(0, y, viewport()->width(), y);
}

void ListView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  columns_.FillWidth();
}

void ListView::updateGeometries() {
  QTableView::updateGeometries();
  horizontalScrollBar()->setRange(0, 0);
}

void ListView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !columns_.Press(event->position().toPoint())) PressRow(event);
}

void ListView::PressRow(QMouseEvent* event) {
  if (indexAt(event->position().toPoint()).isValid())
    QTableView::mousePressEvent(event);
  else
    selectionModel()->clear();
}

void ListView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint position = event->position().toPoint();
  if (columns_.Held()) return columns_.Drag(position.x());
  if (event->buttons() == Qt::NoButton && columns_.EdgeAt(position) >= 0)
    viewport()->setCursor(Qt::SplitHCursor);
  else
    viewport()->unsetCursor();
  QTableView::mouseMoveEvent(event);
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
  if (columns_.Held()) {
    if (columns_.Release()) return;
    QMouseEvent press(QEvent::MouseButtonPress, columns_.PressedAt(), event->globalPosition(), Qt::LeftButton,
                      Qt::LeftButton, event->modifiers());
    PressRow(&press);
  }
  QTableView::mouseReleaseEvent(event);
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  PressRow(event);  // the first click may have been on another row
  ReportSelection();
  Deliver([](Listbox& list) { list.UserDoubleClick(); });
}

QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  const int last = model_.rowCount() - 1;
  const int row = SelectedRow();
  const int page = std::max(1, viewport()->height() / verticalHeader()->defaultSectionSize() - 1);
  const auto goTo = [&](int target) { return model_.index(std::clamp(target, 0, std::max(last, 0)), 0); };
  switch (action) {
    case MoveUp:
      return goTo(row < 0 ? last : row - 1);
    case MoveDown:
      return goTo(row + 1);
    case MovePageUp:
      return goTo(row - page);
    case MovePageDown:
      return goTo(std::max(row, 0) + page);
    case MoveHome:
      return goTo(0);
    case MoveEnd:
      return goTo(last);
    default:  // nothing lies to the left or right of a row
      return {};
  }
}
