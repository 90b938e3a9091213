#include "desktop/BusyPushButton.h"

#include <QAccessible>

void BusyPushButton::setBusy(bool busy) {
  if (busy_ == busy) return;
  busy_ = busy;
  update();
  QAccessible::State changed;
  changed.disabled = true;
  QAccessibleStateChangeEvent event(this, changed);
  QAccessible::updateAccessibility(&event);
}

void BusyPushButton::initStyleOption(QStyleOptionButton* option) const {
  QPushButton::initStyleOption(option);
  if (!busy_) return;
  option->state &= ~(QStyle::State_Enabled | QStyle::State_MouseOver);
  option->palette.setCurrentColorGroup(QPalette::Disabled);
}
