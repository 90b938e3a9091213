#include "desktop/ListView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "desktop/SpokenList.h"
#include "desktop/control_views.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"

namespace {

constexpr int kThinSolid = 2;   // of ListLook::gridHorizontal
constexpr int kThickSolid = 3;  // of ListLook::gridVertical
constexpr int kRowMargin = 6;
constexpr int kCellMargins = 12;  // of a text in its cell, both sides and the grid's line

// Widths such as "100,*": points, here pixels, and "*" or nothing, here 0, for an equal share of the rest.
std::vector<int> givenWidths(const ListLook& look) {
  std::vector<int> widths;
  const QStringList given = QString::fromStdString(look.columnWidths).split(QChar(u','));
  for (int column = 0; column < look.columns; ++column)
    widths.push_back(column < given.size() ? scaled(given[column].toInt()) : 0);
  return widths;
}

std::vector<bool> rowsOf(const QItemSelection& selection, std::int64_t count) {
  std::vector<bool> rows(static_cast<std::size_t>(count));
  for (const QItemSelectionRange& range : selection) {
    for (int row = range.top(); row <= range.bottom() && row < count; ++row)
      rows[static_cast<std::size_t>(row)] = true;
  }
  return rows;
}

// Shows the focus on a row, not on a cell of it, and each text in the direction of its script.
class RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(const ListView& list) : list_(list) {}

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool hasFocus = list_.hasFocus() && list_.currentIndex().row() == index.row();
    option->state.setFlag(QStyle::State_HasFocus, hasFocus);
    option->state.setFlag(QStyle::State_MouseOver, false);
    const bool turned = option->direction == Qt::RightToLeft;
    option->displayAlignment =
        (turned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter;
    option->direction = option->text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
  }

 private:
  const ListView& list_;
};

}  // namespace

ListView::ListView(Listbox& record, QWidget& content)
    : QTableView(&content), record_(&record), model_(record) {
  setUp();
  setModel(&model_);
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& cell) { clickCell(cell, released_); });
}

void ListView::setUp() {
  setSelectionBehavior(SelectRows);
  setSelectionMode(record_->Columns().severalSelectable ? ExtendedSelection : SingleSelection);
  setEditTriggers(NoEditTriggers);
  auto* delegate = new RowDelegate(*this);
  delegate->setParent(this);
  setItemDelegate(delegate);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  horizontalHeader()->hide();
  horizontalHeader()->setHighlightSections(false);  // or a bold font is loaded for nothing
  horizontalHeader()->setMinimumSectionSize(0);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->hide();
  verticalHeader()->setHighlightSections(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  takeRowHeight();
}

void ListView::takeRowHeight() {
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowMargin);
}

void ListView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  takeRowHeight();
  layOutColumns();
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
    if (ends) wanted.select(model_.index(from, 0), model_.index(row, record_->Columns().columns - 1));
  }
  if (differs) selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QAbstractItemView::selectionChanged(selected, deselected);
  SpokenList::say(*this, QAccessible::SelectionRemove, deselected.value(0).topLeft());
  SpokenList::say(*this, QAccessible::SelectionAdd, selected.value(0).topLeft());
  if (!record_ || catchingUp_) return;
  const std::vector<bool> seen = rowsOf(selectionModel()->selection(), record_->ListCount());
  std::vector<std::int64_t> rows;
  for (std::size_t row = 0; row < seen.size(); ++row) {
    if (seen[row]) rows.push_back(static_cast<std::int64_t>(row));
  }
  record_->PersonSelects(rows);
}

void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  SpokenList::say(*this, QAccessible::Focus, current);
}

// The focus of the list itself is reported when this has returned, that of the row after it.
void ListView::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  const auto sayRow = [this] { SpokenList::say(*this, QAccessible::Focus, currentIndex()); };
  QMetaObject::invokeMethod(this, sayRow, Qt::QueuedConnection);
}

void ListView::press(const QModelIndex& cell) {
  setCurrentIndex(cell);
  clickCell(cell, visualRect(cell).center());
}

bool ListView::clickCell(const QModelIndex& cell, QPoint at) {
  if (!record_ || !record_->CellClick || !cell.isValid() || cell.row() >= record_->ListCount()) return false;
  record_->PersonClicksCell(cell.row(), cell.column(), inPoints(at.x()), inPoints(at.y()));
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

// The first step down into a list chooses the row that the focus came to, not the one below it.
bool ListView::selectCurrent() {
  if (selectionModel()->hasSelection() || !currentIndex().isValid()) return false;
  selectionModel()->select(currentIndex(), QItemSelectionModel::Rows | QItemSelectionModel::ClearAndSelect);
  return true;
}

// Home and End lead to the first and the last row, with or without Ctrl.
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
    for (int column = 0; column < record_->Columns().columns; ++column)
      cells << QString::fromStdString(record_->Cell(row, column));
    lines << cells.join(QChar(u'\t'));
  }
  if (!lines.isEmpty()) QGuiApplication::clipboard()->setText(lines.join(QChar(u'\n')));
}

// A column of its own width shows the whole text of the first row, as times are all of one length.
int ListView::columnNeeds(int column, int own) const {
  const QString text = model_.index(0, column).data().toString();
  return std::clamp(fontMetrics().horizontalAdvance(text) + kCellMargins, own, 2 * own);
}

// A column that would run out of sight ends at the edge, so that its texts end in "…" there; one
// that would begin out of sight is not drawn.
void ListView::layOutColumns() {
  if (!record_) return;
  std::vector<int> given = givenWidths(record_->Columns());
  for (int column = 0; column < static_cast<int>(given.size()); ++column) {
    int& own = given[static_cast<std::size_t>(column)];
    if (own > 0) own = columnNeeds(column, own);
  }
  const int shares = static_cast<int>(std::count(given.begin(), given.end(), 0));
  int rest = viewport()->width();
  for (const int width : given) rest -= width;
  int left = 0;
  for (int column = 0; column < static_cast<int>(given.size()); ++column) {
    const int own = given[static_cast<std::size_t>(column)];
    const int wanted = own > 0 ? own : std::max(rest, 0) / std::max(shares, 1);
    const int width = std::min(wanted, viewport()->width() - left);
    setColumnHidden(column, width <= 0);
    if (width > 0) setColumnWidth(column, width);
    left += wanted;
  }
}

void ListView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  layOutColumns();
}

void ListView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (record_) drawGrid();
}

void ListView::drawGrid() const {
  QPainter painter(viewport());
  QColor line = palette().color(QPalette::Text);
  line.setAlphaF(0.18F);
  const ListLook& look = record_->Columns();
  const QRect area = viewport()->rect();
  if (look.gridHorizontal == kThinSolid) {
    const int last = rowAt(area.bottom());
    const int end = last < 0 ? model_.rowCount() - 1 : last;
    for (int row = std::max(rowAt(0), 0); row <= end; ++row)
      painter.fillRect(area.left(), rowViewportPosition(row) + rowHeight(row) - 1, area.width(), 1, line);
  }
  if (look.gridVertical != kThickSolid) return;
  for (int column = 0; column < look.columns; ++column) {
    const int right = columnViewportPosition(column) + columnWidth(column);
    if (!isColumnHidden(column) && right < area.right())
      painter.fillRect(right - 2, area.top(), 2, area.height(), line);
  }
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

// A cell that is cut shows its whole text.
bool ListView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex cell = indexAt(help->pos());
  const QString text = cell.data().toString();
  const bool isCut = fontMetrics().horizontalAdvance(text) + kRowMargin > visualRect(cell).width();
  QToolTip::showText(help->globalPos(), isCut && !text.isEmpty() ? plainToolTip(text) : QString(), this);
  return true;
}

ControlView listboxView(Listbox& record, QWidget& content) {
  auto* list = new ListView(record, content);
  return {list, [list] { list->catchUp(); }, {}, [list] { list->forget(); }};
}
