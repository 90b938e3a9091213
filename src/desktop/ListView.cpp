#include "desktop/ListView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include "desktop/SpokenList.h"
#include "desktop/control_views.h"
#include "desktop/scale.h"

namespace {

std::vector<bool> rowsOf(const QItemSelection& selection, std::int64_t count) {
  std::vector<bool> rows(static_cast<std::size_t>(count));
  for (const QItemSelectionRange& range : selection) {
    for (int row = range.top(); row <= range.bottom() && row < count; ++row)
      rows[static_cast<std::size_t>(row)] = true;
  }
  return rows;
}

}  // namespace

ListView::ListView(Listbox& record, QWidget& content)
    : QTableView(&content), record_(&record), model_(record) {
  setUp();
  setModel(&model_);
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& cell) { clickCell(cell, released_); });
}

void ListView::forget() {
  record_ = nullptr;
  model_.forget();
}

void ListView::catchUp() {
  const QScopedValueRollback busy(catchingUp_, true);
  const bool wasEmpty = model_.rowCount() == 0;
  if (model_.catchUp()) showSelection();
  if (wasEmpty) layOutColumns();
}

void ListView::showSelection() {
  const std::int64_t rows = record_->ListCount();
  const std::vector<bool> seen = rowsOf(selectionModel()->selection(), rows);
  QItemSelection wanted;
  bool differs = false;
  for (int row = 0, from = 0; row < rows; ++row) {
    const bool selected = record_->Selected(row);
    differs |= selected != seen[static_cast<std::size_t>(row)];
    if (!selected) from = row + 1;
    const bool ends = selected && (row + 1 == rows || !record_->Selected(row + 1));
    if (ends) wanted.select(model_.index(from, 0), model_.index(row, record_->Columns() - 1));
  }
  if (differs) selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QAbstractItemView::selectionChanged(selected, deselected);
  SpokenList::report(*this, QAccessible::SelectionRemove, deselected.value(0).topLeft());
  SpokenList::report(*this, QAccessible::SelectionAdd, selected.value(0).topLeft());
  if (!record_ || catchingUp_) return;
  const std::vector<bool> seen = rowsOf(selectionModel()->selection(), record_->ListCount());
  std::vector<std::int64_t> rows;
  for (std::size_t row = 0; row < seen.size(); ++row) {
    if (seen[row]) rows.push_back(static_cast<std::int64_t>(row));
  }
  record_->UserSelects(rows);
}

void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  SpokenList::report(*this, QAccessible::Focus, current);
}

// Qt reports the focus of the list itself after this returns; the row's focus must come after that.
void ListView::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  const auto reportRow = [this] { SpokenList::report(*this, QAccessible::Focus, currentIndex()); };
  QMetaObject::invokeMethod(this, reportRow, Qt::QueuedConnection);
}

void ListView::press(const QModelIndex& cell) {
  setCurrentIndex(cell);
  clickCell(cell, visualRect(cell).center());
}

bool ListView::clickCell(const QModelIndex& cell, QPoint at) {
  if (!record_ || !record_->CellClick || !cell.isValid() || cell.row() >= record_->ListCount()) return false;
  record_->UserClicksCell(cell.row(), cell.column(), inPoints(at.x()), inPoints(at.y()));
  return true;
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
  released_ = event->pos();
  QTableView::mouseReleaseEvent(event);
}

void ListView::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && clickCell(currentIndex(), visualRect(currentIndex()).center())) return event->accept();
  if (isReturn) return event->ignore();
  if (event->matches(QKeySequence::Copy)) return copySelection();
  const bool stays = event->key() == Qt::Key_Home && currentIndex().row() == 0;
  if ((stays || event->key() == Qt::Key_Down) && selectCurrent()) return event->accept();
  QTableView::keyPressEvent(event);
}

// The first step down in a list selects the row that has the focus already, not the one below it.
bool ListView::selectCurrent() {
  if (selectionModel()->hasSelection() || !currentIndex().isValid()) return false;
  selectionModel()->select(currentIndex(), QItemSelectionModel::Rows | QItemSelectionModel::ClearAndSelect);
  return true;
}

// Home and End go to the first and the last row, with or without Ctrl.
QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers keys) {
  if (action == MoveHome) return model_.index(0, 0);
  if (action == MoveEnd) return model_.index(model_.rowCount() - 1, 0);
  return QTableView::moveCursor(action, keys);
}

void ListView::copySelection() const {
  QStringList lines;
  for (int row = 0; record_ && row < record_->ListCount(); ++row) {
    if (!record_->Selected(row)) continue;
    QStringList cells;
    for (int column = 0; column < record_->Columns(); ++column)
      cells << QString::fromStdString(record_->Cell(row, column));
    lines << cells.join(QChar(u'\t'));
  }
  if (!lines.isEmpty()) QGuiApplication::clipboard()->setText(lines.join(QChar(u'\n')));
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
  const bool byKey = event->reason() != QContextMenuEvent::Mouse;
  if (byKey && currentIndex().isValid()) scrollTo(currentIndex());
  const QPoint at = byKey ? visualRect(currentIndex()).center() : event->pos();
  const QString opens = clickOpens();
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [menu](const QString& text, bool enabled, auto act) {
    menu->addAction(text, act)->setEnabled(enabled);
  };
  if (!opens.isEmpty())
    add(opens, indexAt(at).isValid(),
        [this, cell = QPersistentModelIndex(indexAt(at)), at] { clickCell(cell, at); });
  add(tr("Copy"), selectionModel()->hasSelection(), [this] { copySelection(); });
  add(tr("Select All"), severalSelectable() && model_.rowCount() > 0, [this] { selectAll(); });
  menu->popup(viewport()->mapToGlobal(at));
}

ControlView listboxView(Listbox& record, QWidget& content) {
  auto* list = new ListView(record, content);
  return {list, [list] { list->catchUp(); }, {}, [list] { list->forget(); }};
}
