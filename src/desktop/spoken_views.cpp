#include "desktop/spoken_views.h"

#include <QAccessibleWidget>

#include "desktop/Announcement.h"
#include "desktop/BusyPushButton.h"
#include "desktop/Content.h"
#include "desktop/Group.h"
#include "desktop/ListView.h"
#include "desktop/SpokenList.h"
#include "desktop/WindowView.h"

namespace {

// The content of a window. The child at a point is the control that a click there would reach.
class SpokenContent : public QAccessibleWidget {
 public:
  explicit SpokenContent(QWidget& content) : QAccessibleWidget(&content) {}
  QAccessibleInterface* childAt(int x, int y) const override {
    QWidget* at = widget()->childAt(widget()->mapFromGlobal(QPoint(x, y)));
    const auto isPart = [this](const QWidget* part) {  // of a control
      return part->parentWidget() != widget() && !dynamic_cast<Group*>(part->parentWidget());
    };
    while (at && isPart(at)) at = at->parentWidget();
    return at ? QAccessible::queryAccessibleInterface(at) : nullptr;
  }
};

class SpokenGroup : public QAccessibleWidget {
 public:
  explicit SpokenGroup(Group& group) : QAccessibleWidget(&group, QAccessible::Grouping), group_(group) {}
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && group_.heading() ? group_.heading()->accessibleName()
                                                         : QAccessibleWidget::text(kind);
  }
  QRect rect() const override {
    const QRect area = group_.childrenRegion().boundingRect();
    return {group_.mapToGlobal(area.topLeft()), area.size()};
  }
  QList<QPair<QAccessibleInterface*, QAccessible::Relation>> relations(
      QAccessible::Relation match) const override {
    auto found = QAccessibleWidget::relations(match);
    if (match.testFlag(QAccessible::Label) && group_.heading())
      found.append({QAccessible::queryAccessibleInterface(group_.heading()), QAccessible::Label});
    return found;
  }

 private:
  const Group& group_;
};

class SpokenButton : public QAccessibleWidget {
 public:
  explicit SpokenButton(BusyPushButton& button)
      : QAccessibleWidget(&button, QAccessible::Button), button_(button) {}
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.defaultButton = button_.isDefault();
    state.pressed = button_.isDown();
    if (button_.isBusy()) state.disabled = true;
    return state;
  }
  QStringList actionNames() const override {
    const QStringList names = QAccessibleWidget::actionNames();
    return state().disabled ? names : QStringList{pressAction()} + names;
  }
  // Queued, and visible as a click: the command that it starts may run for long.
  void doAction(const QString& name) override {
    name == pressAction() ? button_.animateClick() : QAccessibleWidget::doAction(name);
  }

 private:
  BusyPushButton& button_;
};

// It is never on the screen, but while it has a text it must count as visible, or no screen reader reads it.
class SpokenAnnouncement : public QAccessibleWidget {
 public:
  explicit SpokenAnnouncement(QWidget& widget) : QAccessibleWidget(&widget, QAccessible::Notification) {}
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invisible = text(QAccessible::Name).isEmpty();
    return state;
  }
};

QAccessibleInterface* spokenView(const QString&, QObject* object) {
  if (auto* view = dynamic_cast<WindowView*>(object))
    return new QAccessibleWidget(view, view->isDialog() ? QAccessible::Dialog : QAccessible::Window);
  if (auto* content = dynamic_cast<Content*>(object)) return new SpokenContent(*content);
  if (auto* group = dynamic_cast<Group*>(object)) return new SpokenGroup(*group);
  if (auto* list = dynamic_cast<ListView*>(object)) return new SpokenList(*list);
  if (auto* button = dynamic_cast<BusyPushButton*>(object)) return new SpokenButton(*button);
  if (auto* text = dynamic_cast<Announcement*>(object)) return new SpokenAnnouncement(*text);
  return nullptr;
}

}  // namespace

void installSpokenViews() { QAccessible::installFactory(spokenView); }
