// The look of a list: its rows, columns, grid and tool tips.

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "desktop/ListView.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"

namespace {

constexpr int kThinSolid = 2;   // of ListLayout::gridHorizontal
constexpr int kThickSolid = 3;  // of ListLayout::gridVertical
constexpr int kRowMargin = 6;
constexpr int kCellMargins = 12;  // to the left and right of a text, and the grid's line

// Shows the focus on the whole row, not on one cell, and each text in the direction of its script.
class RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(ListView& list) : QStyledItemDelegate(&list), list_(list) {}

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool hasFocus = list_.hasFocus() && list_.currentIndex().row() == index.row();
    option->state.setFlag(QStyle::State_HasFocus, hasFocus);
    option->state.setFlag(QStyle::State_MouseOver, false);
    const bool rightToLeft = option->direction == Qt::RightToLeft;
    option->displayAlignment =
        (rightToLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter;
    option->direction = option->text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
  }

 private:
  const ListView& list_;
};

}  // namespace

void ListView::setUp() {
  setSelectionBehavior(SelectRows);
  setSelectionMode(record_->Layout().severalSelectable ? ExtendedSelection : SingleSelection);
  setEditTriggers(NoEditTriggers);
  setItemDelegate(new RowDelegate(*this));
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  horizontalHeader()->hide();
  horizontalHeader()->setHighlightSections(false);  // else Qt loads a bold font that is never shown
  horizontalHeader()->setMinimumSectionSize(0);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->hide();
  verticalHeader()->setHighlightSections(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  updateRowHeight();
}

void ListView::updateRowHeight() {
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowMargin);
}

void ListView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  updateRowHeight();
  layOutColumns();
}

// From a list such as "100,*", in pixels: "*", or no entry, becomes 0, an equal share of the rest. A column
// with a width of its own is widened to fit the text of its first row, as all times are equally long.
std::vector<int> ListView::ownWidths() const {
  std::vector<int> widths;
  const QStringList given = QString::fromStdString(record_->Layout().columnWidths).split(QChar(u','));
  for (int column = 0; column < record_->Columns(); ++column) {
    const int own = scaled(given.value(column).toInt());
    const QString text = model_.index(0, column).data().toString();
    const int needed = fontMetrics().horizontalAdvance(text) + kCellMargins;
    widths.push_back(std::clamp(needed, own, 2 * own));
  }
  return widths;
}

// A column that would reach beyond the right edge ends there, so that its texts are elided; a column that
// would begin beyond it is hidden.
void ListView::layOutColumns() {
  if (!record_) return;
  const std::vector<int> widths = ownWidths();
  const int shares = static_cast<int>(std::ranges::count(widths, 0));
  int rest = viewport()->width();
  for (const int own : widths) rest -= own;
  int column = 0, left = 0;
  for (const int own : widths) {
    const int wanted = own > 0 ? own : std::max(rest, 0) / std::max(shares, 1);
    const int width = std::min(wanted, viewport()->width() - left);
    setColumnHidden(column, width <= 0);
    if (width > 0) setColumnWidth(column, width);
    ++column;
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
  const ListLayout& look = record_->Layout();
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

// An elided cell shows its whole text.
bool ListView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex cell = indexAt(help->pos());
  const QString text = cell.data().toString();
  const bool isCut = fontMetrics().horizontalAdvance(text) + kRowMargin > visualRect(cell).width();
  QToolTip::showText(help->globalPos(), isCut && !text.isEmpty() ? plainToolTip(text) : QString(), this);
  return true;
}
