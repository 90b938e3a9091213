#include "desktop/Announcement.h"

#include <QAccessible>

Announcement::Announcement(QWidget& content) : QWidget(&content) { hide(); }

// A notification is read when it shows, whichever version of Qt and of the screen reader it is.
void Announcement::say(const QString& text) {
  if (text.isEmpty()) return;
  setAccessibleName(text);
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

void Announcement::takeBack() {
  if (accessibleName().isEmpty()) return;
  setAccessibleName(QString());
  QAccessibleEvent hidden(this, QAccessible::ObjectHide);
  QAccessible::updateAccessibility(&hidden);
}
