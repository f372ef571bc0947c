#include "framework/qt/RowDelegate.h"

#include <QStyle>
#include <QWidget>

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
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

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
}
