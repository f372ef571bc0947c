#include "framework/qt/TextAreaView.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QSignalBlocker>

#include "framework/qt/Conversions.h"
#include "framework/qt/MenuView.h"

TextAreaView::TextAreaView(const Ref<TextArea>& control, QWidget& parent) : ViewOf(control, parent) {
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    text_ = FromQString(toPlainText());
    Deliver([text = text_](TextArea& area) { area.UserEdit(text); });
  });
}

void TextAreaView::CopyOwn() {
  const QSignalBlocker blocker(this);
  setReadOnly(control_->ReadOnly);
  if (control_->ReadOnly) setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(!control_->AcceptTabs);
  setFrameShape(control_->Border ? QFrame::StyledPanel : QFrame::NoFrame);
  setVerticalScrollBarPolicy(control_->ScrollbarVertical ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  setLineWrapMode(control_->ScrollbarHorizontal ? NoWrap : WidgetWidth);
  if (const QFont font = FontOf(*control_); font != this->font()) setFont(font);
  QPalette own;
  own.setColor(QPalette::Text, ToQColor(control_->TextColor));
  own.setColor(QPalette::Base, ToQColor(control_->BackColor));
  setPalette(own);
  CopyText();
}

void TextAreaView::CopyText() {
  if (text_.Identical(control_->Text)) return;
  text_ = control_->Text;
  setPlainText(LongText(text_));
}

bool TextAreaView::event(QEvent* event) {
  const bool result = QPlainTextEdit::event(event);
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() == QEvent::Paint) PaintFocusRing(*this);
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

/// Qt 6.4 crashes on a clipboard that holds nothing.
void TextAreaView::insertFromMimeData(const QMimeData* source) {
  if (source && source->hasText()) QPlainTextEdit::insertFromMimeData(source);
}
