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
  const QImage image = ToQImage(icon_);
  if (image.isNull()) return setIcon({});
  const QSize inside = size().shrunkBy({kEdge, kEdge, kEdge, kEdge});
  const bool fits = image.width() <= inside.width() && image.height() <= inside.height();
  const QSize shown = fits ? image.size() : image.size().scaled(inside, Qt::KeepAspectRatio);
  QPixmap pixmap = QPixmap::fromImage(
      image.scaled(shown * devicePixelRatioF(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  pixmap.setDevicePixelRatio(devicePixelRatioF());
  setIcon(pixmap);
  setIconSize(shown);
}
