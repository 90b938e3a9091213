#include "desktop/Group.h"

#include <QLabel>

void Group::setHeading(QWidget* heading) {
  heading_ = heading;
  if (auto* label = dynamic_cast<QLabel*>(heading)) label->setBuddy(this);
}
