#pragma once

#include <QTableView>
#include <cstdint>

#include "framework/Listbox.h"
#include "framework/qt/ControlView.h"
#include "framework/qt/ListColumns.h"
#include "framework/qt/ListModel.h"

/// A list: whole rows are selected, one at a time; a click below the rows selects none. Columns keep their
/// widths and are cut off at the right edge; nothing scrolls sideways. A person drags the edges of the
/// columns in the rows themselves; a press there that does not move is a click on the row.
class ListView final : public ViewOf<Listbox, QTableView> {
 public:
  ListView(const Ref<Listbox>& control, QWidget& parent);

 protected:
  void CopyOwn() override;

  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void updateGeometries() override;
  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QList<int>& roles) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void CopyAppearance();
  void CopySelection();

  int SelectedRow() const;
  /// Hands the selection to the control when it is another one than the control knows.
  void ReportSelection();

  /// Tells assistive technology of the row in which the focus is.
  void AnnounceFocus();

  void PaintFrame();
  void PressRow(QMouseEvent* event);

  ListModel model_;
  ListColumns columns_{*this};
  Qt::PenStyle rowLines_ = Qt::NoPen;
  QColor ringColor_;  // of the frame, none for the style's own frame
  int reportedRow_ = -1;
  std::uint64_t generation_ = 0;  // of the rows that are copied
};
