#include "desktop/dropped_text.h"

#include <QMimeData>
#include <QUrl>

std::optional<QString> droppedText(const QMimeData& dragged) {
  if (dragged.hasUrls() && !dragged.urls().isEmpty())
    return QString::fromUtf8(dragged.urls().constFirst().toEncoded());
  if (dragged.hasText()) return dragged.text().trimmed();
  return std::nullopt;
}

void acceptCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}
