#include "desktop/Announcement.h"

#include <QAccessible>

Announcement::Announcement(QWidget& content) : QWidget(&content) { hide(); }

// With every version of Qt and of the screen readers, a notification is read when it is shown.
void Announcement::announce(const QString& text) {
  if (text.isEmpty()) return;
  setAccessibleName(text);
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

void Announcement::withdraw() {
  if (accessibleName().isEmpty()) return;
  setAccessibleName(QString());
  QAccessibleEvent hidden(this, QAccessible::ObjectHide);
  QAccessible::updateAccessibility(&hidden);
}
