#pragma once

#include <QPlainTextEdit>

#include "framework/TextArea.h"
#include "framework/qt/ControlView.h"
#include "framework/qt/EditedSeams.h"

/// A text of any shape, which is copied out byte for byte.
class TextAreaView final : public ViewOf<TextArea, QPlainTextEdit> {
 public:
  TextAreaView(const Ref<TextArea>& control, QWidget& parent);

 protected:
  void CopyOwn() override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  void insertFromMimeData(const QMimeData* data) override;

 private:
  void CopyText();
  void CopyColors();
  void EstimateLines();
  void HideCaret();
  void OnChange(int from, int removed, int added);

  String text_;  // as it was last set or typed
  EditedSeams seams_;
  ShownText::Seams pasted_;  // what a paste under way brings
  int undoSteps_ = 0;
};
