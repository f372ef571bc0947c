#include "framework/qt/ListModel.h"

#include <algorithm>

#include "framework/qt/Conversions.h"

namespace {

Qt::Alignment ToQtAlignment(int alignment) {
  constexpr int kCentred = 2;
  constexpr int kRight = 3;
  const auto horizontal = alignment == kRight     ? Qt::AlignRight
                          : alignment == kCentred ? Qt::AlignHCenter
                                                  : Qt::AlignLeft;
  return horizontal | Qt::AlignVCenter;
}

}  // namespace

void ListModel::Copy(Listbox& list) {
  const Listbox::Changes changes = list.TakeChanges();
  newMeaning_.clear();
  boldMeans_ = OneLine(list.BoldRowMeans);
  italicMeans_ = OneLine(list.ItalicRowMeans);
  headings_ = OneLine(list.AccessibleHeadings).split(',');
  if (changes.rowsRemoved || columns_ != list.ColumnCount) {
    beginResetModel();
    columns_ = list.ColumnCount;
    rows_.clear();
    endResetModel();
  }
  CopyStale(list, changes);
}

void ListModel::CopyStale(const Listbox& list, const Listbox::Changes& changes) {
  const int had = rowCount();
  const int end = std::min(changes.endStale, had);
  for (int row = changes.firstStale; row < end; ++row) {
    Row& copy = rows_[static_cast<std::size_t>(row)];
    const QString meaning = Meaning(copy.front());
    copy = CopyRow(list.RowData(row));
    if (!meaning.isEmpty() && meaning != Meaning(copy.front())) newMeaning_.push_back(row);
    emit dataChanged(index(row, 0), index(row, columns_ - 1));
  }
  if (list.ListCount() != had) {
    beginInsertRows({}, had, list.ListCount() - 1);
    while (rowCount() < list.ListCount()) rows_.push_back(CopyRow(list.RowData(rowCount())));
    endInsertRows();
  }
}

ListModel::Row ListModel::CopyRow(const Listbox::Row& row) {
  Row copy;
  for (const auto& cell : row) copy.push_back({OneLine(cell.text), cell.bold, cell.italic, cell.alignment});
  return copy;
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  const Cell& cell = row[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return cell.text;
    case Qt::FontRole:
      return FontOf(cell);
    case Qt::TextAlignmentRole:
      return QVariant(ToQtAlignment(cell.alignment));
    case Qt::AccessibleTextRole:
      return AccessibleText(cell, index.column());
    default:
      return {};
  }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return headings_.value(section);
}

QFont ListModel::FontOf(const Cell& cell) const {
  QFont font = font_;
  font.setBold(cell.bold);
  font.setItalic(cell.italic);
  return font;
}

QString ListModel::Meaning(const Cell& cell) const {
  return cell.bold ? boldMeans_ : cell.italic ? italicMeans_ : QString();
}

QString ListModel::AccessibleText(const Cell& cell, int column) const {
  const QString meaning = Meaning(cell);
  if (column > 0 || meaning.isEmpty()) return cell.text;
  return cell.text.isEmpty() ? meaning : cell.text + ", " + meaning;
}
