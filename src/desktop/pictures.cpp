#include "desktop/pictures.h"

#include <map>

const QIcon& picture(const std::string& file) {
  static std::map<std::string, QIcon> pictures;
  const auto [at, isNew] = pictures.try_emplace(file);
  if (isNew) at->second = QIcon(QStringLiteral(":/") + QString::fromStdString(file));
  return at->second;
}

const QIcon& programIcon() {
  static const QIcon icon = [] {
    QIcon sizes;
    for (const int size : {16, 32, 48, 128, 256}) sizes.addFile(QStringLiteral(":/icon-%1.png").arg(size));
    return sizes;
  }();
  return icon;
}
