#pragma once

#include <QPlainTextEdit>

#include "framework/TextArea.h"
#include "framework/qt/ControlView.h"

class TextAreaView final : public ViewOf<TextArea, QPlainTextEdit> {
 public:
  TextAreaView(const Ref<TextArea>& control, QWidget& parent);

 protected:
  void CopyOwn() override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void CopyText();

  String text_;  // as it was last set or typed
};
