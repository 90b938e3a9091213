// The look of widgets, menus and windows, and that of lists.

#include <QAccessible>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
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
  for (QWidget* part : partsOf(seen)) describe(out, *part);
  for (QWidget* part : partsOf(seen.content())) {
    describe(out, *part);
    if (seen.controlOf(part)) continue;
    for (QWidget* gathered : partsOf(*part)) describe(out, *gathered);
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
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
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
  EXPECT_EQ(widths(results, "00:00:00.000"), (Widths{558, 100, 458}));
  results.RemoveRow(0);
  draw();
  EXPECT_EQ(widths(results, "a time much longer than all that there are"), (Widths{558, 200, 358}));
}

TEST_F(Desktop, AListHasLinesBelowRowsAndBetweenColumns) {
  ListView& list = showResults({{"00:00:00.000", ""}, {"00:00:00.000", ""}});
  const QImage seen = list.viewport()->grab().toImage();
  // How far from start the lines are, on the way to the opposite edge.
  const auto lines = [&](QPoint start, QPoint step) {
    std::vector<int> found;
    for (int i = 0; seen.valid(start + i * step); ++i) {
      if (seen.pixelColor(start + i * step) != list.palette().color(QPalette::Base)) found.push_back(i);
    }
    return found;
  };
  const int high = list.rowHeight(0), beside = list.columnWidth(0);
  for (const int x : {0, seen.width() - 5})
    EXPECT_EQ(lines({x, 0}, {0, 1}), (std::vector<int>{high - 1, 2 * high - 1})) << "below each row";
  for (const int y : {0, seen.height() - 5})
    EXPECT_EQ(lines({0, y}, {1, 0}), (std::vector<int>{beside - 2, beside - 1})) << "between the columns";
}

TEST_F(Desktop, OnlyACutTextHasAToolTip) {
  const auto tip = [](QWidget& widget, QPoint at) {
    QToolTip::showText(widget.mapToGlobal(at), QStringLiteral("earlier"), &widget);
    QHelpEvent asked(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &asked);
    return QToolTip::text().toStdString();
  };
  const std::string cut = "<b>" + std::string(200, 'w');
  for (const auto& [text, shown] :
       {std::pair(cut, plainToolTip(QString::fromStdString(cut)).toStdString()), {"short", "earlier"}}) {
    form().Label4.SetText(text);
    draw();
    EXPECT_EQ(tip(widget<QLabel>(form().Label4), {2, 2}), shown);
  }
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
  EXPECT_EQ(tipOfRow(1), plainToolTip(fits + QChar(u'i')).toStdString());
  EXPECT_EQ(tip(*list.viewport(), {5, 200}), "earlier");
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
