#pragma once

#include <QStyledItemDelegate>

/// Paints the cells of a list. The row is what has the focus, not a cell in it. The first column's text
/// stands a little inside it and the others' at its edge, or before it on the right, whatever margins the
/// style has.
class RowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
