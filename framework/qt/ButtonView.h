#pragma once

#include <QKeyEvent>
#include <QPushButton>

#include "framework/qt/ControlView.h"

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
  void paintEvent(QPaintEvent* event) override {
    QPushButton::paintEvent(event);
    // Styles frame the default button as they frame the one with the focus.
    constexpr int kInside = 3;
    if (this->isDefault()) PaintFocusRing(*this, kInside);
  }
  void keyPressEvent(QKeyEvent* event) override {
    // The window knows which button the Return key presses.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
      event->ignore();
    else
      QPushButton::keyPressEvent(event);
  }
};
