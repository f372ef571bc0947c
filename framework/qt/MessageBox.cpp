#include "framework/qt/MessageBox.h"

#include <QGridLayout>
#include <QPushButton>
#include <QWindow>

#include "framework/qt/Conversions.h"
#include "framework/qt/Wayland.h"

namespace {

constexpr int kLeastWidth = 260;  // pixels

}  // namespace

MessageBox::MessageBox(const String& text) {
  setTextFormat(Qt::PlainText);
  setText(Lines(text));
  addButton(Ok)->setIcon({});
  if (auto* grid = qobject_cast<QGridLayout*>(layout()))  // room for the title over a short text
    grid->addItem(new QSpacerItem(kLeastWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

void MessageBox::StandOver(const QWidget& window, const QString& title) {
  setWindowTitle(title);
  winId();  // makes the window, which must know before it shows what it belongs to
  windowHandle()->setTransientParent(window.windowHandle());
  adjustSize();
  move(window.geometry().center() - rect().center());
}

bool MessageBox::event(QEvent* event) {
  const bool known = QMessageBox::event(event);
  ObeyCompositor(*this, *event);
  return known;
}
