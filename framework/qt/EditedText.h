#pragma once

#include <QPlainTextEdit>
#include <QPointer>
#include <vector>

#include "framework/Toolkit.h"

/// The text that the Edit menu acts on: the one that has the focus, or had it last and still shows, as a
/// person who reaches for the menu takes the focus from it.
class EditedText {
 public:
  void FocusMovedTo(QWidget* to);

  bool Can(EditCommand command) const;
  /// Does nothing where it cannot be done.
  void Do(EditCommand command) const;

 private:
  QPlainTextEdit* Text() const;

  std::vector<QPointer<QPlainTextEdit>> texts_;  // that had the focus, the last one first
};
