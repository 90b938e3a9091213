#include "desktop/Group.h"

#include <QChildEvent>
#include <QLabel>

Group::Group(QWidget& content) : QWidget(&content) {
  content.installEventFilter(this);
  setGeometry(content.rect());
}

void Group::setHeading(QWidget* heading) {
  heading_ = heading;
  if (auto* label = dynamic_cast<QLabel*>(heading)) label->setBuddy(this);
}

void Group::childEvent(QChildEvent* event) {
  QWidget::childEvent(event);
  if (event->added()) event->child()->installEventFilter(this);
}

bool Group::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (watched == parent()) {
    if (type == QEvent::Resize) setGeometry(parentWidget()->rect());
  } else if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::ShowToParent ||
             type == QEvent::HideToParent) {
    setMask(childrenRegion());
  }
  return QWidget::eventFilter(watched, event);
}

std::unordered_map<const Control*, Group*> makeGroups(const Window& record, QWidget& content) {
  std::unordered_map<const Control*, Group*> groups;
  for (const ControlGroup& gathered : record.Groups()) {
    auto* group = new Group(content);
    for (const Control* control : gathered.controls) groups[control] = group;
  }
  return groups;
}
