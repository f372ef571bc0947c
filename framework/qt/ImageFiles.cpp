#include "framework/qt/ImageFiles.h"

#include <QCoreApplication>
#include <QImageReader>
#include <memory>

#include "framework/Folders.h"

QIcon InstalledIcon() {
  QIcon icon;
  const QString resources = QString::fromLocal8Bit(ResourcesFolder().c_str());
  if (resources.isEmpty()) return icon;
  const QString name = QCoreApplication::applicationName();
  for (const int size : {16, 24, 32, 48, 64})
    icon.addFile(
        QString("%1/../icons/hicolor/%2x%2/apps/%3.png").arg(resources, QString::number(size), name));
  return icon;
}

PictureRef ReadImage(const std::string& path) {
  constexpr int kLargest = 4096;  // pixels on a side
  QImageReader reader(QString::fromLocal8Bit(path.c_str()));
  if (const QSize size = reader.size(); size != size.boundedTo({kLargest, kLargest})) return nullptr;
  const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32);
  if (image.isNull()) return nullptr;
  const auto* pixels = reinterpret_cast<const QRgb*>(image.constBits());
  return std::make_shared<Picture>(
      Picture{image.width(), image.height(), {pixels, pixels + image.width() * image.height()}});
}
