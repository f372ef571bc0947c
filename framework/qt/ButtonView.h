#pragma once

#include <QKeyEvent>
#include <QPushButton>
#include <QStyleOptionButton>

#include "framework/qt/ControlView.h"
#include "framework/qt/Conversions.h"
#include "framework/qt/Painting.h"

/// What the views of the two kinds of button share.
template <class ControlClass>
class ButtonView : public ViewOf<ControlClass, QPushButton> {
 public:
  ButtonView(const Ref<ControlClass>& control, QWidget& parent)
      : ViewOf<ControlClass, QPushButton>(control, parent) {
    this->setAutoDefault(false);
    this->connect(this, &QPushButton::clicked, this,
                  [this] { this->Deliver([](ControlClass& button) { button.UserPress(); }); });
  }

 protected:
  void CopyOwn() override {
    this->setFont(FontOf(*this->control_));
    this->setText(Literal(this->control_->Caption));
  }
  void paintEvent(QPaintEvent* event) override {
    QPushButton::paintEvent(event);
    constexpr int kWidth = 2;
    for (int inside = 0; inside < kWidth; ++inside)
      PaintFocusRing(*this, this->rect().adjusted(inside, inside, -inside, -inside));
  }
  /// The button that Return presses is coloured, the one with the focus has a thick frame. Styles frame both
  /// alike.
  void initStyleOption(QStyleOptionButton* option) const override {
    QPushButton::initStyleOption(option);
    option->state &= ~QStyle::State_HasFocus;
    if (!this->isDefault() || !this->isEnabled()) return;
    option->palette.setColor(QPalette::Button, Mixed(option->palette.color(QPalette::Button),
                                                     option->palette.color(QPalette::Highlight)));
  }
  void keyPressEvent(QKeyEvent* event) override {
    // The window knows which button the Return key presses.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
      event->ignore();
    else
      QPushButton::keyPressEvent(event);
  }
};
