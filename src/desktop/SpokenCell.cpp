#include "desktop/SpokenCell.h"

#include "desktop/ListView.h"
#include "desktop/SpokenList.h"

void* SpokenCell::interface_cast(QAccessible::InterfaceType type) {
  if (isHeading()) return nullptr;  // which offers no action
  if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  return nullptr;
}

bool SpokenCell::isValid() const { return list_ && (isHeading() || index().isValid()); }

QModelIndex SpokenCell::index() const { return list_ ? list_->model()->index(row_, column_) : QModelIndex(); }

QAccessibleInterface* SpokenCell::table() const {
  return list_ ? QAccessible::queryAccessibleInterface(list_) : nullptr;
}

QWindow* SpokenCell::window() const { return list_ ? list_->window()->windowHandle() : nullptr; }

QString SpokenCell::text(QAccessible::Text kind) const {
  if (kind != QAccessible::Name || !list_) return {};
  if (isHeading()) return list_->model()->headerData(column_, Qt::Horizontal).toString();
  return index().data(Qt::AccessibleTextRole).toString();
}

QRect SpokenCell::rect() const {
  if (!index().isValid()) return {};
  const QRect place = list_->visualRect(index());
  return {list_->viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::Role SpokenCell::role() const {
  return isHeading() ? QAccessible::ColumnHeader : QAccessible::Cell;
}

QAccessible::State SpokenCell::state() const {
  QAccessible::State state;
  if (!isValid() || isHeading() || !list_->isVisible()) {
    state.invisible = true;
    return state;
  }
  state.selectable = state.focusable = true;
  state.selected = isSelected();
  state.focused = list_->hasFocus() && list_->currentIndex() == index();
  state.offscreen = !list_->visualRect(index()).intersects(list_->viewport()->rect());
  return state;
}

bool SpokenCell::isSelected() const { return list_ && list_->selectionModel()->isSelected(index()); }

QList<QAccessibleInterface*> SpokenCell::columnHeaderCells() const {
  QAccessibleInterface* list = table();
  return list ? QList{list->child(column_)} : QList<QAccessibleInterface*>{};
}

QStringList SpokenCell::actionNames() const {
  if (!isValid()) return {};
  return list_->clickOpens().isEmpty() ? QStringList{toggleAction()}
                                       : QStringList{pressAction(), toggleAction()};
}

QString SpokenCell::localizedActionDescription(const QString& name) const {
  return name == pressAction() && list_ ? list_->clickOpens()
                                        : QAccessibleActionInterface::localizedActionDescription(name);
}

// A click may open a dialog, so it is queued until the screen reader has its answer.
void SpokenCell::doAction(const QString& name) {
  if (!isValid()) return;
  if (name == toggleAction()) SpokenList::select(*list_, row_, !isSelected());
  if (name != pressAction()) return;
  const QPersistentModelIndex cell = index();
  QMetaObject::invokeMethod(
      list_, [list = list_.data(), cell] { list->press(cell); }, Qt::QueuedConnection);
}
