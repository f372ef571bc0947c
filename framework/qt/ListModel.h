#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <QString>
#include <QStringList>
#include <vector>

#include "framework/Listbox.h"

/// Copies of a list's rows, for painting and for assistive technology.
class ListModel final : public QAbstractTableModel {
 public:
  /// Copies what has changed in the list. With the baton.
  void Copy(Listbox& list);
  /// The rows of the last copy whose style had a meaning and now has another.
  const std::vector<int>& RowsWithNewMeaning() const { return newMeaning_; }
  /// The font of plain cells.
  void SetFont(const QFont& font) { font_ = font; }

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
  void CopyStale(const Listbox& list, const Listbox::Changes& changes);
  QString Meaning(const Cell& cell) const;
  QFont FontOf(const Cell& cell) const;
  QString AccessibleText(const Cell& cell, int column) const;

  std::vector<Row> rows_;
  std::vector<int> newMeaning_;
  int columns_ = 0;
  QFont font_;
  QString boldMeans_, italicMeans_;
  QStringList headings_;
};
