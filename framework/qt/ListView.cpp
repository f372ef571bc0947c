#include "framework/qt/ListView.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "framework/Rectangle.h"
#include "framework/Window.h"
#include "framework/qt/Accessibility.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/Painting.h"

namespace {

constexpr int kGrip = 3;          // pixels to both sides of an edge where it can be taken hold of
constexpr int kSlip = 3;          // pixels that the mouse may move in a click
constexpr int kNarrowest = 16;    // pixels a column keeps
constexpr int kLeading = 4;       // pixels between the lines of text
constexpr int kLeastHeight = 18;  // of a row

/// The row is what has the focus, not a cell in it. The first column's text stands a little inside it and the
/// others' at its edge, or before it on the right, whatever margins the style has.
class RowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    constexpr int kAtStart = 3;  // pixels
    constexpr int kAtEnd = 6;
    const QStyle* style = option.widget->style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, option.widget);
    if (cell.displayAlignment.testFlag(Qt::AlignRight))
      cell.rect.adjust(0, 0, margin - kAtEnd, 0);
    else
      cell.rect.adjust((index.column() == 0 ? kAtStart : 0) - margin, 0, 0, 0);
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
  }
};

/// The colour of the rectangle that the list is a part of, none where it is of none.
QColor RingColor(const Listbox& list) {
  if (!list.Window()) return {};
  for (const auto& control : list.Window()->Controls()) {
    const auto rectangle = Cast<Rectangle>(control);
    if (rectangle && rectangle->Name.Get() == list.InitialParent) return ToQColor(rectangle->TopLeftColor);
  }
  return {};
}

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
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setMinimumSectionSize(1);
  viewport()->setMouseTracking(true);
}

void ListView::CopyOwn() {
  copying_ = true;
  CopyLook();
  if (control_->Visible) {
    model_.Copy(*control_, rowsBehind_ ? ListModel::Scope::kAll : ListModel::Scope::kChanges);
    generation_ = control_->Generation();
    for (const int row : model_.RowsWithNewMeaning())
      Say(*window(), model_.index(row, 0).data(Qt::AccessibleTextRole).toString());
  }
  rowsBehind_ = !control_->Visible;
  CopyColumns();
  CopySelection();
  // Left to the painting of the frame, as Qt leaves it, the layout comes too late for the rows to be painted
  // too.
  executeDelayedItemsLayout();
  copying_ = false;
}

void ListView::CopyLook() {
  if (const QFont font = FontOf(*control_); font != this->font() || model_.columnCount() == 0) {
    setFont(font);
    model_.SetFont(font);
    const int automatic = std::max(QFontMetrics(font).height() + kLeading, kLeastHeight);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(control_->DefaultRowHeight > 0 ? control_->DefaultRowHeight.Get()
                                                                           : automatic);
  }
  const QFrame::Shape frame = control_->Border ? QFrame::StyledPanel : QFrame::NoFrame;
  if (frame != frameShape()) setFrameShape(frame);  // which has all of the list painted
  horizontalHeader()->setVisible(control_->HasHeading);
  setVerticalScrollBarPolicy(!control_->ScrollBarVertical   ? Qt::ScrollBarAlwaysOff
                             : control_->AutoHideScrollbars ? Qt::ScrollBarAsNeeded
                                                            : Qt::ScrollBarAlwaysOn);
  ringColor_ = RingColor(*control_);
  rowLines_ = LineStyle(control_->GridLinesHorizontal);
  columnLines_ = LineStyle(control_->GridLinesVertical);
  columnsResizable_ = control_->ColumnsResizable;
}

void ListView::CopyColumns() {
  const int count = model_.columnCount();
  if (count == 0 || (lastColumnWidth_ > 0 && columnWidths_.Identical(control_->ColumnWidths))) return;
  columnWidths_ = control_->ColumnWidths;
  const QStringList widths = OneLine(columnWidths_).split(',', Qt::SkipEmptyParts);
  for (int column = 0; column < count; ++column) {
    const int given = column < widths.size() ? widths[column].toInt() : 0;
    const int width = given > 0 ? given : control_->Width / count;
    // The widths are counted from the edge of the control, and its frame covers the edge.
    lastColumnWidth_ = std::max(1, width - (column == 0 ? frameWidth() : 0));
    setColumnWidth(column, lastColumnWidth_);
  }
  FillWidth();
}

void ListView::CopySelection() {
  reportedRow_ = control_->ListIndex();
  if (reportedRow_ == SelectedRow()) return;
  if (reportedRow_ < 0)
    SelectNone();
  else
    selectRow(reportedRow_);
}

int ListView::SelectedRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.front().row();
}

void ListView::SelectNone() {
  selectionModel()->clear();
}

void ListView::ReportSelection() {
  const int row = SelectedRow();
  if (row == reportedRow_) return;
  reportedRow_ = row;
  Deliver([row, generation = generation_](Listbox& list) { list.UserSelect(row, generation); });
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  // The selection model is in the middle of its change. What comes by mouse or key is reported at the end of
  // that event, what comes another way soon.
  if (!copying_) QTimer::singleShot(0, this, [this] { ReportSelection(); });
}

void ListView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                           const QList<int>& roles) {
  QTableView::dataChanged(topLeft, bottomRight, roles);
  // What a row's style means is part of its name.
  for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
    TellOfRow(*this, row, QAccessible::NameChanged);
}

void ListView::TellFocus() {
  if (hasFocus() && SelectedRow() >= 0) TellOfRow(*this, SelectedRow(), QAccessible::Focus);
}

bool ListView::event(QEvent* event) {
  const bool result = QTableView::event(event);
  // Qt tells that the list has the focus, and does so after this event.
  if (event->type() == QEvent::FocusIn) QTimer::singleShot(0, this, [this] { TellFocus(); });
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() == QEvent::Paint) PaintFrame();
  return result;
}

/// A list in a rectangle has the rectangle's frame instead of the style's.
void ListView::PaintFrame() {
  if (ringColor_.isValid() && frameShape() != QFrame::NoFrame) {
    QPainter painter(this);
    PaintRing(painter, rect(), ringColor_, ringColor_);
  }
  PaintFocusRing(*this, rect());
}

void ListView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (rowLines_ == Qt::NoPen && columnLines_ == Qt::NoPen) return;
  QPainter painter(viewport());
  QColor color = palette().color(QPalette::Text);
  color.setAlphaF(0.35f);
  const int bottom = event->rect().bottom();
  QPen pen(color, 1, rowLines_);
  pen.setCapStyle(Qt::FlatCap);  // a dot is as long as it is wide
  painter.setPen(pen);
  for (int row = std::max(rowAt(event->rect().top()), 0); row < model_.rowCount(); ++row) {
    const int y = rowViewportPosition(row) + rowHeight(row) - 1;
    if (y > bottom) break;
    painter.drawLine(0, y, viewport()->width(), y);
  }
  pen.setStyle(columnLines_);
  painter.setPen(pen);
  for (int column = 0; column < model_.columnCount(); ++column) {
    const int x = columnViewportPosition(column) + columnWidth(column) - 1;
    painter.drawLine(x, event->rect().top(), x, bottom);
  }
}

void ListView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  FillWidth();
}

void ListView::updateGeometries() {
  QTableView::updateGeometries();
  horizontalScrollBar()->setRange(0, 0);
}

void ListView::FillWidth() {
  const int last = model_.columnCount() - 1;
  if (last < 0) return;
  setColumnWidth(last, std::max(lastColumnWidth_, viewport()->width() - columnViewportPosition(last)));
}

int ListView::EdgeAt(QPoint position) const {
  if (!columnsResizable_ || horizontalHeader()->isVisible() || rowAt(position.y()) < 0) return -1;
  for (int column = 0; column < model_.columnCount(); ++column) {
    const int edge = columnViewportPosition(column) + columnWidth(column);
    if (edge < viewport()->width() && std::abs(position.x() - edge) <= kGrip) return column;
  }
  return -1;
}

void ListView::DragEdge(int x) {
  dragging_ |= std::abs(x - pressedAt_.x()) > kSlip;
  if (!dragging_) return;
  setColumnWidth(heldColumn_, std::max(heldWidth_ + x - pressedAt_.x(), kNarrowest));
  FillWidth();
}

void ListView::mousePressEvent(QMouseEvent* event) {
  pressedAt_ = event->position().toPoint();
  dragging_ = false;
  heldColumn_ = event->button() == Qt::LeftButton ? EdgeAt(pressedAt_) : -1;
  if (heldColumn_ < 0)
    PressRow(event);
  else
    heldWidth_ = columnWidth(heldColumn_);
}

void ListView::PressRow(QMouseEvent* event) {
  if (indexAt(event->position().toPoint()).isValid())
    QTableView::mousePressEvent(event);
  else
    SelectNone();
  ReportSelection();
}

void ListView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint position = event->position().toPoint();
  if (heldColumn_ >= 0) return DragEdge(position.x());
  if (event->buttons() == Qt::NoButton && EdgeAt(position) >= 0)
    viewport()->setCursor(Qt::SplitHCursor);
  else
    viewport()->unsetCursor();
  QTableView::mouseMoveEvent(event);
  ReportSelection();
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
  if (std::exchange(heldColumn_, -1) >= 0) {
    if (dragging_) return;
    QMouseEvent press(QEvent::MouseButtonPress, pressedAt_, event->globalPosition(), Qt::LeftButton,
                      Qt::LeftButton, event->modifiers());
    PressRow(&press);
  }
  QTableView::mouseReleaseEvent(event);
  ReportSelection();
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // The first click may have been on another row.
  if (indexAt(event->position().toPoint()).row() != SelectedRow()) PressRow(event);
  ReportSelection();
  Deliver([](Listbox& list) { list.UserDoubleClick(); });
}

void ListView::keyPressEvent(QKeyEvent* event) {
  QTableView::keyPressEvent(event);
  ReportSelection();
}

QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  const int last = model_.rowCount() - 1;
  const int row = SelectedRow();
  const int page =
      std::max(1, viewport()->height() / std::max(1, verticalHeader()->defaultSectionSize()) - 1);
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
