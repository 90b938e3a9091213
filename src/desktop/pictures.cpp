#include "desktop/pictures.h"

#include <QPainter>
#include <QPixmap>
#include <map>

namespace {

// name is a resource's, without its extension.
QPixmap pixmap(const QString& name) {
  static std::map<QString, QPixmap> pixmaps;
  return pixmaps.try_emplace(name, QStringLiteral(":/%1.png").arg(name)).first->second;
}

}  // namespace

void drawPicture(QPainter& painter, const QRect& place, const std::string& file) {
  const QString name = QString::fromStdString(file).section(QChar(u'.'), 0, 0);
  const bool fine = painter.device()->devicePixelRatioF() > 1;
  const QPixmap picture = pixmap(fine ? name + QStringLiteral("@2x") : name);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  if (!picture.isNull()) painter.drawPixmap(place, picture);
}

const QIcon& programIcon() {
  static const QIcon icon = [] {
    QIcon sizes;
    for (const int size : {16, 32, 48, 128, 256}) sizes.addFile(QStringLiteral(":/icon-%1.png").arg(size));
    return sizes;
  }();
  return icon;
}
