#include "framework/qt/BevelButtonView.h"

#include <QPixmap>

void BevelButtonView::CopyOwn() {
  constexpr int kEdge = 3;  // pixels between the picture and the edge of the button
  ButtonView::CopyOwn();
  const QSize room = size().shrunkBy({kEdge, kEdge, kEdge, kEdge});
  const QPixmap pixmap = ToQPixmap(control_->Icon, room, devicePixelRatioF());
  setIcon(pixmap);
  setIconSize(pixmap.deviceIndependentSize().toSize());
}
