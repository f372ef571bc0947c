#include "framework/qt/TextAreaView.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>

#include "framework/qt/Conversions.h"
#include "framework/qt/MenuView.h"
#include "framework/qt/Painting.h"

namespace {

constexpr const char* kPlainText = "text/plain";

}  // namespace

TextAreaView::TextAreaView(const Ref<TextArea>& control, QWidget& parent) : ViewOf(control, parent) {
  setTabChangesFocus(true);
  connect(document(), &QTextDocument::contentsChange, this, &TextAreaView::OnChange);
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    text_ = ShownText::Bytes(document()->toRawText(), 0, seams_.Get());
    Deliver([text = text_](TextArea& area) { area.UserEdit(text); });
  });
}

void TextAreaView::CopyOwn() {
  const QSignalBlocker blocker(this);
  setReadOnly(control_->ReadOnly);
  if (control_->ReadOnly) setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFont(FontOf(*control_));
  CopyColors();
  CopyText();
}

void TextAreaView::CopyColors() {
  QPalette own;
  own.setColor(QPalette::Text, ToQColor(control_->TextColor));
  own.setColor(QPalette::Base, ToQColor(control_->BackColor));
  own.setColor(QPalette::Inactive, QPalette::Highlight, ToQColor(control_->BackColor));
  own.setColor(QPalette::Inactive, QPalette::HighlightedText, ToQColor(control_->TextColor));
  setPalette(own);
}

void TextAreaView::CopyText() {
  if (text_.Identical(control_->Text)) return;
  text_ = control_->Text;
  ShownText shown(text_);
  setPlainText(shown.Characters());
  seams_.Set(shown.TakeSeams());
  EstimateLines();
}

/// Qt takes a paragraph for one line until it has laid it out, which it does as it comes into view. The
/// scroll bar would grow by each of them.
void TextAreaView::EstimateLines() {
  const int columns = std::max(1, viewport()->width() / std::max(1, QFontMetrics(font()).averageCharWidth()));
  for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next())
    if (block.layout()->lineCount() == 0)
      block.setLineCount(1 + static_cast<int>(block.text().count(QChar::LineSeparator)) +
                         block.length() / columns);
}

void TextAreaView::OnChange(int from, int removed, int added) {
  const int steps = document()->availableUndoSteps();
  if (steps < undoSteps_)
    seams_.Undo(from, removed, added);
  else
    seams_.Edit(from, removed, added, pasted_);
  undoSteps_ = steps;
}

QMimeData* TextAreaView::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  auto* data = new QMimeData;
  data->setData(kPlainText, QByteArray::fromStdString(ShownText::Bytes(
                                cursor.selectedText(), cursor.selectionStart(), seams_.Get())));
  return data;
}

/// Qt 6.4 asks for a paste from a clipboard that holds nothing.
void TextAreaView::insertFromMimeData(const QMimeData* data) {
  if (isReadOnly() || !data || !data->hasText()) return;
  const QByteArray bytes = data->data(kPlainText);
  ShownText shown(bytes.isEmpty() ? FromQString(data->text()) : String(bytes.toStdString()));
  pasted_ = shown.TakeSeams();
  textCursor().insertText(shown.Characters());
  pasted_.clear();
  ensureCursorVisible();
}

/// Qt shows a caret in a text that can be read by keyboard, as the focus comes and with each key. It hides it
/// when a text stops being editable, so this makes it editable and back.
void TextAreaView::HideCaret() {
  const auto interaction = textInteractionFlags();
  setTextInteractionFlags(Qt::TextEditorInteraction);
  setTextInteractionFlags(interaction);
}

bool TextAreaView::event(QEvent* event) {
  const bool result = QPlainTextEdit::event(event);
  if (isReadOnly() && (event->type() == QEvent::FocusIn || event->type() == QEvent::KeyPress)) HideCaret();
  if (event->type() == QEvent::Paint) PaintFocusRing(*this, rect());
  return result;
}

/// Alt with a letter is for menus, and no letter even where there are none. On the Mac it makes letters.
void TextAreaView::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers held = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  if (!kOneBarForAll && held == Qt::AltModifier && !event->text().isEmpty())
    event->ignore();
  else
    QPlainTextEdit::keyPressEvent(event);
}

void TextAreaView::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  EstimateLines();
}
