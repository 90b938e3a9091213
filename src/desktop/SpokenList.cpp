#include "desktop/SpokenList.h"

#include "desktop/ListView.h"
#include "desktop/SpokenCell.h"

SpokenList::SpokenList(ListView& list) : QAccessibleWidget(&list, QAccessible::Table), list_(list) {}

void SpokenList::report(ListView& list, QAccessible::Event event, const QModelIndex& cell) {
  const bool hasHappened = event != QAccessible::Focus || list.hasFocus();
  if (!QAccessible::isActive() || !hasHappened || !cell.isValid()) return;
  const auto* spoken = dynamic_cast<SpokenList*>(QAccessible::queryAccessibleInterface(&list));
  if (!spoken || cell.row() >= spoken->rowCount() || cell.column() >= spoken->columnCount()) return;
  QAccessibleEvent reported(&list, event);
  reported.setChild(spoken->indexOf(cell.row(), cell.column()));
  QAccessible::updateAccessibility(&reported);
}

bool SpokenList::select(ListView& list, int row, bool selected) {
  if (row < 0 || row >= list.model()->rowCount()) return false;
  const auto how = !selected                  ? QItemSelectionModel::Deselect
                   : list.severalSelectable() ? QItemSelectionModel::Select
                                              : QItemSelectionModel::ClearAndSelect;
  list.selectionModel()->select(list.model()->index(row, 0), how | QItemSelectionModel::Rows);
  return true;
}

void SpokenList::dropCells() {
  for (const QAccessible::Id id : cells_) QAccessible::deleteAccessibleInterface(id);
  cells_.clear();
}

void* SpokenList::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State SpokenList::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.multiSelectable = list_.severalSelectable();
  return state;
}

// Only the last columns are ever hidden.
int SpokenList::columnCount() const {
  int seen = 0;
  while (seen < list_.model()->columnCount() && !list_.isColumnHidden(seen)) ++seen;
  return seen;
}

int SpokenList::rowCount() const { return list_.model()->rowCount(); }

int SpokenList::indexOfChild(const QAccessibleInterface* child) const {
  const auto* cell = dynamic_cast<const SpokenCell*>(child);
  return cell && cell->table() == this ? indexOf(cell->rowIndex(), cell->columnIndex()) : -1;
}

QAccessibleInterface* SpokenList::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const int row = index / columnCount() - 1, column = index % columnCount();
  const int place = (row + 1) * list_.model()->columnCount() + column;  // stays while columns hide and show
  if (const auto known = cells_.constFind(place); known != cells_.cend())
    return QAccessible::accessibleInterface(*known);
  auto* cell = new SpokenCell(list_, row, column);
  cells_.insert(place, QAccessible::registerAccessibleInterface(cell));
  return cell;
}

QAccessibleInterface* SpokenList::cellAt(int row, int column) const {
  const bool isThere = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
  return isThere ? child(indexOf(row, column)) : nullptr;
}

QAccessibleInterface* SpokenList::childAt(int x, int y) const {
  const QModelIndex at = list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y)));
  return at.isValid() ? cellAt(at.row(), at.column()) : nullptr;
}

QAccessibleInterface* SpokenList::focusChild() const {
  const QModelIndex at = list_.currentIndex();
  return list_.hasFocus() && at.isValid() ? cellAt(at.row(), at.column()) : nullptr;
}

QList<QAccessibleInterface*> SpokenList::selectedCells() const {
  QList<QAccessibleInterface*> cells;
  for (const int row : selectedRows()) {
    for (int column = 0; column < columnCount(); ++column) cells.append(cellAt(row, column));
  }
  return cells;
}

QString SpokenList::columnDescription(int column) const {
  return list_.model()->headerData(column, Qt::Horizontal).toString();
}

QList<int> SpokenList::selectedRows() const {
  QList<int> rows;
  for (const QModelIndex& row : list_.selectionModel()->selectedRows()) rows.append(row.row());
  return rows;
}

bool SpokenList::isRowSelected(int row) const { return list_.selectionModel()->isRowSelected(row); }

// Cells read their texts when asked, and rows are only added at the end, so neither change makes a cell
// wrong.
void SpokenList::modelChange(QAccessibleTableModelChangeEvent* event) {
  using Event = QAccessibleTableModelChangeEvent;
  const bool keeps =
      event->modelChangeType() == Event::DataChanged || event->modelChangeType() == Event::RowsInserted;
  if (!keeps) dropCells();
}
