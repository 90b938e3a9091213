// The look of widgets, menus and windows, and that of lists.

#include <QAccessible>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <QScrollArea>
#include <QStyleOptionViewItem>
#include <QTextStream>
#include <QToolTip>

#include "desktop/shown_text.h"
#include "desktop_fixture.h"
#include "support/recorded.h"

namespace {

// A widget has only some of them. None depends on the fonts of the machine.
const QByteArrayList kProperties =
    QByteArray(
        "acceptDrops accessibleName alignment autoDefault autoExclusive autoFillBackground checked cornerButtonEnabled "
        "default editTriggers enabled focusPolicy frameShape horizontalScrollBarPolicy maxLength objectName "
        "placeholderText readOnly selectionBehavior selectionMode showGrid tabChangesFocus tabKeyNavigation textFormat "
        "textInteractionFlags verticalScrollBarPolicy verticalScrollMode visible wordWrap")
        .split(' ');

// The width of these depends on the font.
bool hasOwnWidth(const QWidget& widget) {
  return widget.inherits("QLabel") || widget.inherits("QCheckBox") || widget.inherits("QRadioButton");
}

void describePlace(QTextStream& out, const QWidget& widget) {
  const QWidget& around = *widget.parentWidget();
  const QRect place = widget.geometry();
  out << " at " << (widget.objectName() == u"stop" ? -1 : place.left()) << ","
      << around.height() - place.bottom() << " " << place.height();
  if (!hasOwnWidth(widget)) out << " right " << around.width() - place.right();
}

// What a screen reader reads.
void describeSpoken(QTextStream& out, QWidget& widget) {
  const QAccessibleInterface& node = *QAccessible::queryAccessibleInterface(&widget);
  out << " role=" << node.role();
  for (const auto& [other, relation] : node.relations(QAccessible::Label | QAccessible::Labelled))
    out << (relation == QAccessible::Label ? " labelled by " : " labels ") << other->text(QAccessible::Name);
}

void describe(QTextStream& out, QWidget& widget) {
  out << "\n" << widget.metaObject()->className();
  for (const QByteArray& name : kProperties) {
    const QVariant value = widget.property(name.constData());
    if (!value.isValid()) continue;
    out << " " << name << "=";
    value.typeId() == QMetaType::QString ? out << value.toString() : out << value.toInt();
  }
  out << " italic=" << widget.font().italic() << " cursor=" << widget.testAttribute(Qt::WA_SetCursor);
  if (widget.testAttribute(Qt::WA_SetPalette))
    out << " " << widget.palette().color(QPalette::WindowText).name() << " "
        << widget.palette().color(QPalette::PlaceholderText).name();
  if (!hasOwnWidth(widget)) out << " size=" << widget.font().pixelSize();
  if (!widget.inherits("QMenuBar")) describePlace(out, widget);
  describeSpoken(out, widget);
  const auto* list = dynamic_cast<const ListView*>(&widget);
  if (!list) return;
  for (const QHeaderView* header : {list->horizontalHeader(), list->verticalHeader()})
    out << " header " << header->isHidden() << header->highlightSections() << header->sectionResizeMode(0);
  out << " row " << list->verticalHeader()->defaultSectionSize() - list->fontMetrics().height() << " "
      << list->horizontalHeader()->minimumSectionSize();
}

// The parts of a window, or of a group of controls, from bottom to top.
QList<QWidget*> partsOf(const QWidget& whole) {
  return whole.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

void describe(QTextStream& out, const QList<QAction*>& actions) {
  for (const QAction* action : actions)
    out << "\n"
        << action->text() << " " << action->shortcut().toString() << " " << action->menuRole()
        << action->isSeparator() << action->isVisible() << " " << action->data().toString();
}

void describe(QTextStream& out, const WindowView& seen) {
  out << "\n\n" << seen.windowTitle() << " " << seen.windowFlags().toInt() << " " << seen.acceptDrops();
  describeSpoken(out, const_cast<WindowView&>(seen));
  for (const QWidget* whole :
       {static_cast<const QWidget*>(&seen), static_cast<const QWidget*>(&seen.content())}) {
    for (QWidget* part : partsOf(*whole)) {
      describe(out, *part);
      if (!seen.controlOf(part) && whole == &seen.content())
        for (QWidget* gathered : partsOf(*part)) describe(out, *gathered);
    }
  }
  out << "\n";
  const QWidget* widget = &seen.content();
  do {
    widget = widget->nextInFocusChain();
    if (const Control* control = seen.controlOf(widget)) out << " " << control->Name().c_str();
    if (widget == seen.focusWidget()) out << " (focus)";
  } while (widget != &seen.content());
  describe(out, seen.actions());
  for (const auto* bar : seen.findChildren<QMenuBar*>()) {
    for (const QAction* menu : bar->actions()) {
      out << "\n" << menu->text();
      describe(out, menu->menu()->actions());
    }
  }
}

// The screen of these tests has 800 x 800 pixels; the heights of menus and titles depend on the font.
void describeSizes(QTextStream& out, const WindowView& seen) {
  const auto sized = [&out](QSize size) { out << " " << size.width() << "x" << size.height(); };
  const auto* bar = seen.findChild<QMenuBar*>();
  const QSize above(0, bar ? bar->height() : 0),
      title(0, seen.style()->pixelMetric(QStyle::PM_TitleBarHeight));
  const bool isCut = seen.height() + title.height() > 780;
  out << "\n" << seen.windowTitle() << " " << isCut;
  sized(isCut ? seen.size() + title : seen.size() - above);
  for (const QSize& limit : {seen.minimumSize(), seen.maximumSize()}) sized(limit - above);
  sized(seen.content().size());
  for (const QWidget* part : partsOf(seen.content())) {
    const QRect place = part->geometry();
    if (seen.controlOf(part) && !hasOwnWidth(*part))
      out << "  " << place.x() << "," << place.y(), sized(place.size());
  }
  const auto* scroller = seen.findChild<QScrollArea*>();
  if (scroller)
    out << " " << scroller->frameShape() << scroller->focusPolicy() << " "
        << seen.height() - scroller->geometry().bottom();
}

// Notes how the cells of a list are drawn.
class NotingStyle : public QProxyStyle {
 public:
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    QProxyStyle::drawControl(element, option, painter, widget);
    const auto* cell = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element != CE_ItemViewItem || !cell) return;
    const QString look = QStringLiteral("%1 %2 %3")
                             .arg(cell->text)
                             .arg(cell->displayAlignment.toInt(), 0, 16)
                             .arg(int{cell->direction});
    drawn.push_back(look.toStdString() + (cell->state.testFlag(State_HasFocus) ? " focus" : "") +
                    (cell->state.testFlag(State_MouseOver) ? " mouse" : ""));
  }
  mutable std::vector<std::string> drawn;
};

}  // namespace

// After a change on purpose, look at the windows, and then renew the recorded text (see ExpectRecorded).
TEST_F(Desktop, WidgetsMenusAndWindowsHaveTheRecordedProperties) {
  aboutWin::Get().Show();
  SearchWin::Get().resultsList.AddRow("00:00:00.000");
  SearchWin::Get().searchTerm.SetText("for \"R&D\"");
  form().Listbox1.AddRow("English");
  draw();
  QString all;
  QTextStream out(&all);
  for (const auto& window : app->Windows()) describe(out, view(*window));
  const QFont before = QApplication::font();
  for (const int size : {before.pixelSize(), 16, 40}) {
    QFont font = before;
    if (size > 0) font.setPixelSize(size);
    QApplication::setFont(font);
    QCoreApplication::processEvents();
    draw();
    for (const auto& window : app->Windows()) describeSizes(out, view(*window));
  }
  QApplication::setFont(before);
  ExpectRecorded(all.toStdString() + "\n", "desktop/widgets.txt");
}

TEST_F(Desktop, ColumnsWithoutAWidthShareTheRest) {
  SearchWin& results = SearchWin::Get();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(results)));
  const auto widths = [&](Listbox& record, const char* first) {
    record.AddRow(first);
    record.SetVisible(true);
    draw();
    const ListView& list = widget<ListView>(record);
    std::vector<int> all = {list.viewport()->width()};
    for (int column = 0; column < record.Columns(); ++column) all.push_back(list.columnWidth(column));
    return all;
  };
  using Widths = std::vector<int>;
  EXPECT_EQ(widths(form().Listbox1, "English"), (Widths{248, 248, 0})) << "less than its own 250 points";
  EXPECT_EQ(widths(form().XMLList, ""), (Widths{932, 932}));
  EXPECT_EQ(widths(form().listBox2, ""), (Widths{932, 233, 233, 233, 233}));
  EXPECT_EQ(widths(results.resultsList, "00:00:00.000"), (Widths{558, 100, 458}));
  results.resultsList.RemoveRow(0);
  draw();
  EXPECT_EQ(widths(results.resultsList, "a time much longer than all that there are"),
            (Widths{558, 200, 358}));
}

TEST_F(Desktop, AListHasLinesBelowRowsAndBetweenColumns) {
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
  for (int row = 0; row < 2; ++row) results.AddRow("00:00:00.000");
  draw();
  ListView& list = widget<ListView>(results);
  const QImage seen = list.viewport()->grab().toImage();
  const QRect area = list.viewport()->rect();
  const auto isLine = [&](int x, int y) {
    return seen.pixelColor(QPoint(x, y)) != list.palette().color(QPalette::Base);
  };
  std::vector<int> rows, columns;
  for (int y = 0; y < area.height(); ++y) {
    if (isLine(area.right() - 5, y)) rows.push_back(y);
  }
  for (int x = 0; x < area.width(); ++x) {
    if (isLine(x, area.bottom() - 5)) columns.push_back(x);
  }
  const int high = list.rowHeight(0), beside = list.columnWidth(0);
  EXPECT_EQ(rows, (std::vector<int>{high - 1, 2 * high - 1})) << "below each row";
  EXPECT_EQ(columns, (std::vector<int>{beside - 2, beside - 1})) << "between the columns";
  EXPECT_TRUE(isLine(0, high - 1) && isLine(beside - 1, 0)) << "from edge to edge";
}

TEST_F(Desktop, ARowShowsTheFocusAndEachTextItsDirection) {
  NotingStyle style;
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
  for (const char* text : {"one", "\u05D0"})
    results.AddRow("0"), results.SetCell(results.LastIndex(), 1, text);
  draw();
  ListView& list = widget<ListView>(results);
  list.setStyle(&style);
  using Drawn = std::vector<std::string>;
  const auto drawn = [&] {
    style.drawn.clear();
    list.viewport()->grab();
    return style.drawn;
  };
  list.setCurrentIndex(list.model()->index(1, 0));
  QHoverEvent over(QEvent::HoverMove, QPointF(5, 5), QPointF(5, 5), QPointF());
  QApplication::sendEvent(list.viewport(), &over);
  EXPECT_EQ(drawn(), (Drawn{"0 91 0", "one 91 0", "0 91 0 focus", "\u05D0 91 1 focus"}));
  widget<QWidget>(SearchWin::Get().closeBtn).setFocus();
  list.setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(drawn(), (Drawn{"0 92 0", "one 92 0", "0 92 0", "\u05D0 92 1"}));
}

TEST_F(Desktop, OnlyACutTextHasAToolTip) {
  const auto tip = [](QWidget& widget, QPoint at) {
    QToolTip::showText(widget.mapToGlobal(at), QStringLiteral("earlier"), &widget);
    QHelpEvent asked(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &asked);
    return QToolTip::text().toStdString();
  };
  auto& label = widget<QLabel>(form().Label4);
  EXPECT_EQ(tip(label, {2, 2}), "earlier");
  form().Label4.SetText("<b>" + std::string(200, 'w'));
  draw();
  EXPECT_EQ(tip(label, {2, 2}),
            plainToolTip(QStringLiteral("<b>") + QString(200, QChar(u'w'))).toStdString());
  form().Label4.SetText("short");
  draw();
  EXPECT_EQ(tip(label, {2, 2}), "earlier");
  const ListView& list = languages();
  QString fits;
  while (list.fontMetrics().horizontalAdvance(fits + QChar(u'i')) + 6 <= list.viewport()->width())
    fits += QChar(u'i');
  form().Listbox1.AddRow(fits.toStdString());
  form().Listbox1.AddRow(fits.toStdString() + "i");
  draw();
  const auto tipOfRow = [&](int row) {
    return tip(*list.viewport(), list.visualRect(list.model()->index(row, 0)).center());
  };
  EXPECT_EQ(tipOfRow(0), "earlier");
  EXPECT_EQ(tipOfRow(1), "<p>" + withBreaks(fits + QChar(u'i')).toStdString() + "</p>");
  EXPECT_EQ(tip(*list.viewport(), {5, 200}), "earlier");
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
