#pragma once

#include <QPoint>
#include <QTableView>

#include "framework/String.h"

/// The columns of a list without a heading, whose right edges a person drags in the rows themselves. The last
/// one reaches at least to the list's right edge.
class ListColumns {
 public:
  explicit ListColumns(QTableView& list) : list_(list) {}

  /// Sets the widths, in pixels with commas between them. Widths that were set before stay as a person has
  /// made them.
  void SetWidths(const String& widths);
  void FillWidth();

  /// The column whose right edge a person can take hold of there, -1 for none.
  int EdgeAt(QPoint position) const;

  /// A press takes hold of an edge, or returns false. It is held until the release; a press that does not
  /// move until then was a click, for which the release returns false.
  bool Press(QPoint position);
  bool Held() const { return held_ >= 0; }
  void Drag(int x);
  bool Release();
  QPoint PressedAt() const { return pressedAt_; }

 private:
  int Count() const { return list_.model()->columnCount(); }

  QTableView& list_;
  String widths_;
  int lastWidth_ = 0;  // of the last column, at least
  QPoint pressedAt_;
  int held_ = -1;      // by its right edge
  int heldWidth_ = 0;  // of that column as it was
  bool dragging_ = false;
};
