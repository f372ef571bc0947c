#include "framework/Listbox.h"

#include <algorithm>

Listbox::Row::Row(std::size_t cells) {
  if (cells == 1)
    cells_.emplace<CellData>();
  else
    cells_.emplace<Many>(cells);
}

void Listbox::AddRow(const String& text) {
  Row row(static_cast<std::size_t>(std::max<int>(ColumnCount, 1)));
  row[0].text = text;
  rows_.Append(std::move(row));
  MarkRowStale(ListCount() - 1);
}

void Listbox::RemoveRow(int row) {
  if (row < 0 || row >= ListCount()) return;
  rows_.Remove(static_cast<std::size_t>(row));
  changes_.rowsRemoved = true;
  ++generation_;
  MarkStale();
  if (row < listIndex_) {
    --listIndex_;
  } else if (row == listIndex_) {
    ListIndex(-1);
  }
}

void Listbox::DeleteAllRows() {
  rows_.Clear();
  changes_.rowsRemoved = true;
  ++generation_;
  MarkStale();
  ListIndex(-1);
}

void Listbox::Cell(int row, int column, const String& text) {
  if (CellData* cell = CellToChange(row, column)) cell->text = text;
}

void Listbox::CellBold(int row, int column, bool bold) {
  if (CellData* cell = CellToChange(row, column)) cell->bold = bold;
}

void Listbox::CellItalic(int row, int column, bool italic) {
  if (CellData* cell = CellToChange(row, column)) cell->italic = italic;
}

void Listbox::CellAlignment(int row, int column, int alignment) {
  if (CellData* cell = CellToChange(row, column)) cell->alignment = alignment;
}

void Listbox::ListIndex(int row) {
  if (row < 0 || row >= ListCount()) row = -1;
  if (row == listIndex_) return;
  listIndex_ = row;
  MarkStale();
  if (Change) Change(Ref<Listbox>(this));
}

void Listbox::UserSelect(int row, std::uint64_t generation) {
  if (!Reachable()) return;
  if (generation != generation_) {  // the user meant a row that is gone: show again what is selected
    MarkStale();
    return;
  }
  ListIndex(row);
}

void Listbox::UserDoubleClick() {
  if (Reachable() && DoubleClick) DoubleClick(Ref<Listbox>(this));
}

Listbox::Changes Listbox::TakeChanges() {
  return std::exchange(changes_, Changes());
}

const Listbox::CellData& Listbox::At(int row, int column) const {
  static const auto& outside = *new CellData;  // threads outlive statics
  if (row < 0 || row >= ListCount()) return outside;
  const Row& cells = RowData(row);
  if (column < 0 || column >= static_cast<int>(cells.size())) return outside;
  return cells[static_cast<std::size_t>(column)];
}

Listbox::CellData* Listbox::CellToChange(int row, int column) {
  if (row < 0 || row >= ListCount()) return nullptr;
  Row& cells = rows_[static_cast<std::size_t>(row)];
  if (column < 0 || column >= static_cast<int>(cells.size())) return nullptr;
  MarkRowStale(row);
  return &cells[static_cast<std::size_t>(column)];
}

void Listbox::MarkRowStale(int row) {
  if (changes_.firstStale == changes_.endStale) {
    changes_.firstStale = row;
    changes_.endStale = row + 1;
  } else {
    changes_.firstStale = std::min(changes_.firstStale, row);
    changes_.endStale = std::max(changes_.endStale, row + 1);
  }
  MarkStale();
}
