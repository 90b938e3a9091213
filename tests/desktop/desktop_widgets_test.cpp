// Properties of widgets, menus and windows that no other test would show.

#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QTextStream>

#include "desktop_fixture.h"
#include "support/recorded.h"

namespace {

// A widget has only some of them. None depends on the fonts of the machine.
const QByteArrayList kProperties =
    QByteArray(
        "acceptDrops accessibleName alignment autoDefault autoExclusive checked cornerButtonEnabled default "
        "editTriggers enabled focusPolicy frameShape horizontalScrollBarPolicy maxLength objectName placeholderText "
        "readOnly selectionBehavior selectionMode showGrid tabChangesFocus tabKeyNavigation textFormat "
        "textInteractionFlags verticalScrollBarPolicy verticalScrollMode visible wordWrap")
        .split(' ');

void describe(QTextStream& out, const QWidget& widget) {
  out << "\n" << widget.metaObject()->className();
  for (const QByteArray& name : kProperties) {
    const QVariant value = widget.property(name.constData());
    if (!value.isValid()) continue;
    out << " " << name << "=";
    value.typeId() == QMetaType::QString ? out << value.toString() : out << value.toInt();
  }
  out << " italic=" << widget.font().italic() << " own=" << widget.testAttribute(Qt::WA_SetPalette)
      << widget.testAttribute(Qt::WA_SetCursor);
  if (!dynamic_cast<const QLabel*>(&widget)) out << " size=" << widget.font().pixelSize();
  const auto* list = dynamic_cast<const ListView*>(&widget);
  if (!list) return;
  for (const QHeaderView* header : {list->horizontalHeader(), list->verticalHeader()})
    out << " header " << header->isHidden() << header->highlightSections() << header->sectionResizeMode(0);
  out << " row " << list->verticalHeader()->defaultSectionSize() - list->fontMetrics().height() << " "
      << list->horizontalHeader()->minimumSectionSize();
}

void describe(QTextStream& out, const QList<QAction*>& actions) {
  for (const QAction* action : actions)
    out << "\n"
        << action->text() << " " << action->shortcut().toString() << " " << action->menuRole()
        << action->isSeparator() << action->isVisible() << " " << action->data().toString();
}

}  // namespace

// After a change on purpose, look at the windows, and then renew the recorded text (see ExpectRecorded).
TEST_F(Desktop, WidgetsMenusAndWindowsHaveTheRecordedProperties) {
  aboutWin::Get().Show();
  SearchWin::Get().resultsList.AddRow("00:00:00.000");
  form().Listbox1.AddRow("English");
  draw();
  QString all;
  QTextStream out(&all);
  for (const auto& window : app->Windows()) {
    const WindowView& seen = view(*window);
    const QWidget& content = seen.content();
    const QSize above(0, content.y()), least = seen.minimumSize() - above, most = seen.maximumSize() - above;
    out << "\n\n"
        << seen.windowTitle() << " " << seen.windowFlags().toInt() << " " << seen.acceptDrops() << " "
        << least.width() << "x" << least.height() << " " << most.width() << "x" << most.height();
    for (const QObject* child : content.children()) {
      const auto& widget = dynamic_cast<const QWidget&>(*child);
      describe(out, widget);
      out << " bottom " << content.height() - widget.geometry().bottom();
    }
    out << "\n";
    const QWidget* widget = &content;
    do {
      widget = widget->nextInFocusChain();
      if (const Control* control = seen.controlOf(widget)) out << control->Name().c_str() << " ";
    } while (widget != &content);
    describe(out, seen.actions());
    for (const auto* bar : seen.findChildren<QMenuBar*>()) {
      for (const QAction* menu : bar->actions()) {
        out << "\n" << menu->text();
        describe(out, menu->menu()->actions());
      }
    }
  }
  ExpectRecorded(all.toStdString() + "\n", "desktop/widgets.txt");
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
