#include "framework/qt/ListColumns.h"

#include <QHeaderView>
#include <algorithm>
#include <cstdlib>

#include "framework/qt/Conversions.h"

namespace {

constexpr int kGrip = 3;        // pixels to both sides of an edge where it can be taken hold of
constexpr int kClickSlack = 3;  // pixels that the mouse may move in a click
constexpr int kNarrowest = 16;  // pixels a column keeps, and the last one of the list's width

}  // namespace

void ListColumns::SetWidths(const String& widths) {
  if (widths_.Identical(widths)) return;
  widths_ = widths;
  int column = 0;
  for (const QString& width : OneLine(widths).split(',')) {
    // The widths are counted from the edge of the control, and its frame covers the edge.
    lastWidth_ = width.toInt() - (column == 0 ? list_.frameWidth() : 0);
    list_.setColumnWidth(column++, lastWidth_);
  }
}

void ListColumns::FillWidth() {
  const int last = Count() - 1;
  const int room = list_.viewport()->width() - list_.columnViewportPosition(last);
  list_.setColumnWidth(last, std::max(lastWidth_, room));
}

int ListColumns::EdgeAt(QPoint position) const {
  if (list_.rowAt(position.y()) < 0) return -1;
  for (int column = 0; column < Count(); ++column) {
    const int edge = list_.columnViewportPosition(column) + list_.columnWidth(column);
    if (edge < list_.viewport()->width() && std::abs(position.x() - edge) <= kGrip) return column;
  }
  return -1;
}

bool ListColumns::Press(QPoint position) {
  pressedAt_ = position;
  dragging_ = false;
  held_ = EdgeAt(position);
  heldWidth_ = list_.columnWidth(held_);
  return Held();
}

void ListColumns::Drag(int x) {
  dragging_ |= std::abs(x - pressedAt_.x()) > kClickSlack;
  if (!dragging_) return;
  // An edge beyond the list's could never be taken hold of again.
  const int room = list_.viewport()->width() - list_.columnViewportPosition(held_) - kNarrowest;
  list_.setColumnWidth(held_, std::max(std::min(heldWidth_ + x - pressedAt_.x(), room), kNarrowest));
  FillWidth();
}

bool ListColumns::Release() {
  held_ = -1;
  return dragging_;
}
