#include "framework/qt/BevelButtonView.h"

#include <QPixmap>

#include "framework/qt/Conversions.h"

void BevelButtonView::CopyOwn() {
  setFont(FontOf(*control_));
  setText(Literal(control_->Caption));
  if (icon_ != control_->Icon.Get()) CopyIcon();
}

void BevelButtonView::CopyIcon() {
  constexpr int kEdge = 3;  // pixels between the picture and the edge of the button
  icon_ = control_->Icon;
  const QPixmap pixmap = ToQPixmap(icon_, size().shrunkBy({kEdge, kEdge, kEdge, kEdge}), devicePixelRatioF());
  setIcon(pixmap);
  setIconSize(pixmap.deviceIndependentSize().toSize());
}
