#pragma once

#include <QLabel>

#include "framework/Label.h"
#include "framework/qt/ControlView.h"

/// A label; one with a handler for clicks is a link, which the keyboard reaches too.
class LabelView final : public ViewOf<Label, QLabel> {
 public:
  LabelView(const Ref<Label>& control, QWidget& parent);

  bool IsLink() const { return link_; }
  /// The text, of which the middle may not show.
  const QString& WholeText() const { return whole_; }
  /// As a click in the middle.
  void Press() { Press(rect().center()); }

 protected:
  void CopyOwn() override;
  void mousePressEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void CopyColor();
  void Press(QPoint position);

  QString whole_;
  bool link_ = false;
};
