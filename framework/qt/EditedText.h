#pragma once

#include <QPlainTextEdit>
#include <QPointer>

#include "framework/Toolkit.h"

/// The text that the Edit menu acts on: the one that has the focus, or had it last and still shows, as a
/// person who reaches for the menu takes the focus from it.
class EditedText {
 public:
  void FocusMoves(QWidget* to);

  bool Can(EditCommand command) const;
  /// Does nothing where it cannot be done.
  void Do(EditCommand command) const;

 private:
  QPlainTextEdit* Text() const { return last_ && last_->isVisible() ? last_ : nullptr; }

  QPointer<QPlainTextEdit> last_;  // that had the focus
};
