#include "framework/qt/EditedText.h"

#include <algorithm>

void EditedText::FocusMovedTo(QWidget* to) {
  auto* text = qobject_cast<QPlainTextEdit*>(to);
  std::erase(texts_, text);  // a nullptr takes those that have gone
  texts_.insert(texts_.begin(), text);
}

QPlainTextEdit* EditedText::Text() const {
  const auto shown = std::ranges::find_if(texts_, [](const auto& text) { return text && text->isVisible(); });
  return shown == texts_.end() ? nullptr : shown->data();
}

bool EditedText::Can(EditCommand command) const {
  const QPlainTextEdit* text = Text();
  if (!text) return false;
  if (command == EditCommand::kCopy) return text->textCursor().hasSelection();
  if (text->isReadOnly()) return false;
  switch (command) {
    case EditCommand::kUndo:
      return text->document()->isUndoAvailable();
    case EditCommand::kPaste:
      return text->canPaste();
    default:
      return text->textCursor().hasSelection();
  }
}

void EditedText::Do(EditCommand command) const {
  if (!Can(command)) return;
  QPlainTextEdit* text = Text();
  switch (command) {
    case EditCommand::kUndo:
      return text->undo();
    case EditCommand::kCut:
      return text->cut();
    case EditCommand::kCopy:
      return text->copy();
    case EditCommand::kPaste:
      return text->paste();
    case EditCommand::kClear:
      return text->textCursor().removeSelectedText();
  }
}
