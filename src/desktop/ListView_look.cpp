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

// From a list such as "100,*": points become pixels; "*", or no entry, becomes 0, an equal share of the rest.
std::vector<int> givenWidths(const ListLayout& look) {
  std::vector<int> widths;
  const QStringList given = QString::fromStdString(look.columnWidths).split(QChar(u','));
  for (int column = 0; column < look.columns; ++column)
    widths.push_back(column < given.size() ? scaled(given[column].toInt()) : 0);
  return widths;
}

// Shows the focus on the whole row, not on one cell, and each text in the direction of its script.
class RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(const ListView& list) : list_(list) {}

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

// A column with a width of its own is widened to fit the text of its first row, as all times are equally
// long.
int ListView::columnNeeds(int column, int own) const {
  const QString text = model_.index(0, column).data().toString();
  return std::clamp(fontMetrics().horizontalAdvance(text) + kCellMargins, own, 2 * own);
}

// A column that would reach beyond the right edge ends there, so that its texts are elided; a column that
// would begin beyond it is hidden.
void ListView::layOutColumns() {
  if (!record_) return;
  std::vector<int> given = givenWidths(record_->Layout());
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
