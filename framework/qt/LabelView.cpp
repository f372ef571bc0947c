#include "framework/qt/LabelView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>
#include <cstdlib>

#include "framework/Rectangle.h"
#include "framework/Window.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/TextFitting.h"

namespace {

Qt::Alignment AlignmentOf(const Label& label) {
  const auto horizontal = label.TextAlign == 1   ? Qt::AlignHCenter
                          : label.TextAlign == 2 ? Qt::AlignRight
                                                 : Qt::AlignLeft;
  return horizontal | (label.Multiline ? Qt::AlignTop : Qt::AlignVCenter);
}

QRect PlaceOf(const Control& control) {
  return {control.Left, control.Top, control.Width, control.Height};
}

/// True for a label over a filled rectangle; false on the window's own background.
bool StandsOnFill(const Label& label) {
  return std::ranges::any_of(label.StandsIn()->Controls(), [&](const Ref<Control>& control) {
    return Cast<Rectangle>(control) && control->TabPanelIndex == label.TabPanelIndex &&
           PlaceOf(*control).contains(PlaceOf(label));
  });
}

/// The design's colours were chosen for a light window. One that would be lost on the window's background is
/// the palette's link colour.
QColor Readable(QColor color, const QPalette& palette) {
  constexpr int kLeastContrast = 80;  // in shades of grey
  const int contrast = std::abs(qGray(color.rgb()) - qGray(palette.color(QPalette::Window).rgb()));
  return contrast < kLeastContrast ? palette.color(QPalette::Link) : color;
}

}  // namespace

LabelView::LabelView(const Ref<Label>& control, QWidget& parent) : ViewOf(control, parent) {
  setTextFormat(Qt::PlainText);
}

void LabelView::CopyOwn() {
  const Wrapping wrapping = control_->Multiline ? Wrapping::kWords : Wrapping::kNone;
  whole_ = Lines(control_->Text);
  if (!control_->Multiline) whole_ = whole_.section('\n', 0, 0);
  setAlignment(AlignmentOf(*control_));
  setWordWrap(control_->Multiline);
  setFont(Squeezed(FontOf(*control_), whole_, size(), wrapping));
  setText(Shortened(whole_, font(), size(), wrapping));
  setToolTip(text() == whole_ ? QString() : ToolTip(whole_));
  CopyColor();

  link_ = control_->MouseDown != nullptr;
  setFocusPolicy(link_ ? Qt::StrongFocus : Qt::NoFocus);
  if (link_) setCursor(Qt::PointingHandCursor);
}

void LabelView::CopyColor() {
  QPalette own;  // what it does not set follows the window's colours, and so does black
  const QColor color = ToQColor(control_->TextColor);
  if (StandsOnFill(*control_))
    own.setColor(QPalette::WindowText, color);
  else if (color != Qt::black)
    own.setColor(QPalette::WindowText, Readable(color, window()->palette()));
  setPalette(own);
}

void LabelView::Press(QPoint position) {
  Deliver([position](Label& label) { label.UserMouseDown(position.x(), position.y()); });
}

void LabelView::mousePressEvent(QMouseEvent* event) {
  if (link_ && event->button() == Qt::LeftButton)
    Press(event->position().toPoint());
  else
    event->ignore();  // the window's
}

void LabelView::enterEvent(QEnterEvent*) {
  Deliver([](Label& label) { label.UserMouseEnter(); });
}

void LabelView::leaveEvent(QEvent*) {
  Deliver([](Label& label) { label.UserMouseExit(); });
}

void LabelView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      return Press();
    default:
      return QLabel::keyPressEvent(event);
  }
}

void LabelView::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  QStyleOptionFocusRect option;
  option.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
