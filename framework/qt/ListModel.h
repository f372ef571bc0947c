#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <QString>
#include <QStringList>
#include <array>
#include <vector>

#include "framework/Listbox.h"

/// Copies of a list's rows, for painting and for assistive technology.
class ListModel final : public QAbstractTableModel {
 public:
  /// Copies what has changed in the list; with `kAll`, every row. With the baton.
  enum class Scope { kChanges, kAll };
  void Copy(Listbox& list, Scope scope);
  /// The rows of the last copy whose style had a meaning and now has another.
  const std::vector<int>& RowsWithNewMeaning() const { return newMeaning_; }
  /// The font of plain cells.
  void SetFont(const QFont& font);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  /// What assistive technology reads of the column. Rows have no heading.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Cell {
    QString text;
    bool bold = false;
    bool italic = false;
    int alignment = 0;
  };
  using Row = std::vector<Cell>;

  static Row CopyRow(const Listbox::Row& row);
  void CopyAll(const Listbox& list);
  void CopyStale(const Listbox& list, const Listbox::Changes& changes);
  const Cell* At(const QModelIndex& index) const;
  QString Meaning(const Cell& cell) const;
  QString AccessibleText(const Cell& cell, int column) const;

  std::vector<Row> rows_;
  std::vector<int> newMeaning_;
  int columns_ = 0;
  std::array<QFont, 4> fonts_;  // plain, bold, italic, both
  QString boldMeans_, italicMeans_;
  QStringList headings_;
};
