#pragma once

#include <QMessageBox>

#include "framework/String.h"

/// A text with an OK button.
class MessageBox final : public QMessageBox {
 public:
  explicit MessageBox(const String& text);

  /// Makes it belong to a window that shows, in whose middle it comes up.
  void StandOver(const QWidget& window, const QString& title);

 protected:
  bool event(QEvent* event) override;
};
