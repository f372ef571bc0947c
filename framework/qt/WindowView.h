#pragma once

#include <QPointer>
#include <QRect>
#include <QWidget>
#include <memory>

#include "framework/Window.h"
#include "framework/qt/MenuView.h"
#include "framework/qt/WindowContent.h"
#include "framework/qt/WindowVoice.h"

/// What shows one window: a frame by the window manager, the menu bar where the window has one, and the
/// content below it. Nothing here closes the window: the user's wish is handed on, and the view goes when the
/// toolkit finds the window gone.
class WindowView final : public QWidget {
 public:
  /// With the baton, as is `Copy`. `owner` is the view that a sheet or a modal window stays above, or
  /// nullptr.
  WindowView(const Ref<Window>& window, WindowView* owner, const MenuView::Front& front);

  const Ref<Window>& ShownWindow() const { return window_; }
  /// What its labels say, from the top down.
  QString LabelTexts() const { return content_.LabelTexts(); }

  /// Copies what has changed in the window and its controls.
  void Copy();
  /// True when the first picture has been drawn.
  bool Painted() const { return painted_; }

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void SetFlags(WindowView* owner);
  void CopyParts();
  void CopyTitle();
  void CopyGeometry();
  void CopyLimits();
  void CopyShown();

  int BarHeight() const;
  void PlaceParts();
  QSize ContentSize() const;
  void ReportGeometry();

  const Ref<Window> window_;
  const QPointer<QWidget> owner_;  // a sheet's or a modal window's
  QMenuBar* bar_ = nullptr;
  std::unique_ptr<MenuView> menus_;
  WindowContent content_{*this, window_};
  int above_ = 0;  // height of the menu bar
  QSize minimum_;  // that the content may measure
  QSize maximum_;
  QRect known_;  // the content's place on the screen that both the window and this know of
  int shows_ = 0;
  bool painted_ = false;
  WindowVoice voice_;
};
