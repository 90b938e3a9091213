#include "desktop/menu_actions.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "runtime/Application.h"

namespace {

// Qt's Ctrl is the command key on systems that have one; help has the desktop's own key.
QKeySequence shortcutOf(const MenuItem& item) {
  if (item.ShowsHelp) return QKeySequence(QKeySequence::HelpContents);
  return QKeySequence(
      QString::fromStdString(item.Shortcut).replace(QStringLiteral("Cmd+"), QStringLiteral("Ctrl+")));
}

QAction::MenuRole roleOf(const MenuItem& item) {
  return item.Quits ? QAction::QuitRole : QAction::TextHeuristicRole;
}

QAction* makeAction(const MenuItem& item, const ChooseItem& choose, QObject* owner) {
  auto* action = new QAction(QString::fromStdString(item.Caption), owner);
  action->setShortcut(shortcutOf(item));
  action->setMenuRole(roleOf(item));
  action->setData(QString::fromStdString(item.Name));
  QObject::connect(action, &QAction::triggered, owner, [choose, name = item.Name] { choose(name); });
  return action;
}

void enableFromRecord(const QMenu& menu) {
  Application& app = Application::Current();
  app.EnableMenuItems();
  for (QAction* action : menu.actions()) {
    const MenuItem* item = app.CurrentMenuBar()->Find(action->data().toString().toStdString());
    if (!item) continue;
    action->setEnabled(item->Enabled);
    action->setVisible(item->Visible);
  }
}

// The shortcut of a disabled action would go to the focused widget instead; so all stay enabled, and whether
// an item can be chosen is decided when it is.
void enableForShortcuts(const QMenu& menu) {
  for (QAction* action : menu.actions()) action->setEnabled(true);
}

void fillMenu(QMenu& menu, const Menu& record, const ChooseItem& choose) {
  for (const MenuItem& item : record.Items) {
    if (item.IsSeparator()) {
      menu.addSeparator();
    } else {
      menu.addAction(makeAction(item, choose, &menu));
    }
  }
  QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] { enableFromRecord(menu); });
  QObject::connect(&menu, &QMenu::aboutToHide, &menu, [&menu] { enableForShortcuts(menu); });
}

void addShortcutsOf(QWidget& window, const MenuBar& record, const ChooseItem& choose,
                    bool (*wanted)(const MenuItem&)) {
  for (const Menu& menu : record.Menus) {
    for (const MenuItem& item : menu.Items) {
      if (wanted(item)) window.addAction(makeAction(item, choose, &window));
    }
  }
}

}  // namespace

void fillMenuBar(QMenuBar& bar, const MenuBar& record, const ChooseItem& choose) {
  for (const Menu& menu : record.Menus)
    fillMenu(*bar.addMenu(QString::fromStdString(menu.Caption)), menu, choose);
}

void addShortcuts(QWidget& window, const MenuBar& record, const ChooseItem& choose) {
  addShortcutsOf(window, record, choose, [](const MenuItem& item) { return !shortcutOf(item).isEmpty(); });
}

void addQuitShortcut(QWidget& window, const MenuBar& record, const ChooseItem& choose) {
  addShortcutsOf(window, record, choose, [](const MenuItem& item) { return item.Quits; });
}
