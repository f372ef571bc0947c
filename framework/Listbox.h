#pragma once

#include <cstdint>
#include <functional>
#include <variant>
#include <vector>

#include "framework/Control.h"
#include "framework/GapBuffer.h"

/// Rows of text cells with a style for each cell, addressed by row and column from 0. Out of range, a read
/// gives "" or false and a write or removal does nothing.
class Listbox : public TextControl {
 public:
  struct CellData {
    String text;
    bool bold = false;
    bool italic = false;
    int alignment = 0;
  };
  /// The cells of a row. A row of one cell needs no memory of its own: a list of lines has many.
  class Row {
   public:
    Row() = default;
    explicit Row(std::size_t cells);

    std::size_t size() const { return One() ? 1 : std::get<Many>(cells_).size(); }
    const CellData* begin() const { return One() ? One() : std::get<Many>(cells_).data(); }
    const CellData* end() const { return begin() + size(); }
    const CellData& operator[](std::size_t column) const { return begin()[column]; }
    CellData& operator[](std::size_t column) { return const_cast<CellData&>(begin()[column]); }

   private:
    using Many = std::vector<CellData>;
    const CellData* One() const { return std::get_if<CellData>(&cells_); }

    std::variant<Many, CellData> cells_;
  };

  /// What has changed since the screen last copied the rows. Rows below `firstStale` and from `endStale` on
  /// are as they were, unless rows have been removed: then nothing is.
  struct Changes {
    int firstStale = 0;
    int endStale = 0;
    bool rowsRemoved = false;
  };

  Property<int> ColumnCount{this, 1};
  Property<String> ColumnWidths{this};  // pixels, separated by commas
  Property<bool> HasHeading{this};
  Property<int> HeadingIndex{this, -1};
  Property<bool> Border{this, true};
  Property<int> GridLinesHorizontal{this}, GridLinesVertical{this};  // 0 none, 2 thin dotted, 3 thin solid
  Property<bool> ScrollbarHorizontal{this}, ScrollBarVertical{this, true}, AutoHideScrollbars{this, true};
  Property<int> DefaultRowHeight{this, -1};  // -1 automatic
  Property<int> SelectionType{this};         // 0 one row at a time
  Property<bool> RequiresSelection{this}, ColumnsResizable{this}, UseFocusRing{this, true};
  Property<bool> Hierarchical{this}, EnableDrag{this}, EnableDragReorder{this};
  Property<String> InitialValue{this};
  /// How assistive technology tells a bold and an italic row; empty to say nothing of it.
  Property<String> BoldRowMeans{this}, ItalicRowMeans{this};
  /// What assistive technology calls the columns, separated by commas; empty to say nothing of them.
  Property<String> AccessibleHeadings{this};
  /// What it says as a thread of the window begins to fill the list, and the word for one row and for
  /// several, separated by a comma, with which it counts them at the end; empty to say nothing.
  Property<String> AccessibleStart{this}, AccessibleRows{this};

  /// After the selection has changed.
  std::function<void(Ref<Listbox>)> Change;
  /// A double click in the list, on a row or below the last one.
  std::function<void(Ref<Listbox>)> DoubleClick;

  /// A new last row with `text` in column 0.
  void AddRow(const String& text);
  void RemoveRow(int row);
  /// Raises `Change` when a row was selected.
  void DeleteAllRows();
  int ListCount() const { return static_cast<int>(rows_.Size()); }

  const String& Cell(int row, int column) const { return At(row, column).text; }
  void Cell(int row, int column, const String& text);
  bool CellBold(int row, int column) const { return At(row, column).bold; }
  void CellBold(int row, int column, bool bold);
  bool CellItalic(int row, int column) const { return At(row, column).italic; }
  void CellItalic(int row, int column, bool italic);
  int CellAlignment(int row, int column) const { return At(row, column).alignment; }
  /// 0 the column's own, 1 left, 2 centred, 3 right.
  void CellAlignment(int row, int column, int alignment);

  /// The selected row, -1 for none.
  int ListIndex() const { return listIndex_; }
  /// Selects a row, or none for a row that is not there, and raises `Change` when that is another one.
  void ListIndex(int row);

  /// Counts removals: a row number that a user saw under another generation may mean another row now.
  std::uint64_t Generation() const { return generation_; }
  /// The user has selected a row (-1 for none) of the rows of this generation.
  void UserSelect(int row, std::uint64_t generation);
  void UserDoubleClick();

  /// For the screen: all cells of a row in range, and what has changed since the last call.
  const Row& RowData(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  Changes TakeChanges();

 private:
  const CellData& At(int row, int column) const;
  CellData* CellToChange(int row, int column);
  void MarkRowStale(int row);

  GapBuffer<Row> rows_;
  int listIndex_ = -1;
  std::uint64_t generation_ = 0;
  Changes changes_;
};
