// What a screen reader reads of the windows, and what it can do. tests/spoken checks the same from outside,
// with a real one's interface.

#include <QAccessible>

#include "desktop_fixture.h"

namespace {

QAccessibleInterface& spoken(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }

std::string nameOf(const QAccessibleInterface& node) { return node.text(QAccessible::Name).toStdString(); }

std::string stateOf(const QAccessibleInterface& node) {
  const QAccessible::State state = node.state();
  return std::string(state.invisible ? "invisible " : "") + (state.selectable ? "selectable " : "") +
         (state.focusable ? "focusable " : "") + (state.selected ? "selected " : "") +
         (state.focused ? "focused " : "") + (state.offscreen ? "offscreen " : "") +
         (state.multiSelectable ? "multiSelectable " : "");
}

}  // namespace

// A group covers the controls of other groups, and those of none.
TEST_F(Desktop, AClickOnAControlReachesItThroughAllGroups) {
  form().TextBox.UserClicks();
  draw();
  QWidget& content = view(form()).content();
  for (const Control* control : form().Controls()) {
    const QWidget* seen = view(form()).widgetOf(*control);
    if (!seen || !control->Visible() || control == &form().TextArea1) continue;
    const QWidget* at = content.childAt(seen->geometry().center());
    EXPECT_TRUE(at == seen || seen->isAncestorOf(at)) << control->Name();
  }
  EXPECT_EQ(content.childAt(20, 20), nullptr);
  form().SRTBox.SetVisible(false);
  draw();
  EXPECT_EQ(content.childAt(widget<QWidget>(form().SRTBox).geometry().center()), nullptr);
}

TEST_F(Desktop, AListIsSpokenWithHeadingsAndWithoutRowNumbers) {
  QAccessibleInterface& list = spoken(showResults({{"00:00:01.500", "one"}, {"00:00:02.500", "two"}}));
  const QAccessibleTableInterface& table = *list.tableInterface();
  Texts names;
  for (int i = 0; i < list.childCount(); ++i) {
    names.push_back(nameOf(*list.child(i)));
    EXPECT_EQ(list.indexOfChild(list.child(i)), i);
    EXPECT_EQ(list.child(i)->role(), i < 2 ? QAccessible::ColumnHeader : QAccessible::Cell);
    EXPECT_EQ(list.child(i)->text(QAccessible::Description), QString());
  }
  EXPECT_EQ(names, (Texts{"Time", "Text", "00:00:01.500", "one", "00:00:02.500", "two"}));
  EXPECT_EQ(list.indexOfChild(&list), -1);
  EXPECT_EQ(stateOf(*list.child(0)), "invisible ");
  for (const auto& [row, column] : {std::pair(-1, 0), {2, 0}, {0, -1}, {0, 2}})
    EXPECT_EQ(table.cellAt(row, column), nullptr);
  for (const int index : {-1, 6}) EXPECT_EQ(list.child(index), nullptr);
  QAccessibleInterface& hit = *table.cellAt(1, 1);
  EXPECT_EQ(nameOf(*hit.tableCellInterface()->columnHeaderCells().first()), "Text");
  const QString press = QAccessibleActionInterface::pressAction();
  EXPECT_EQ(hit.actionInterface()->actionNames(),
            (QStringList{press, QAccessibleActionInterface::toggleAction()}));
  EXPECT_EQ(hit.actionInterface()->localizedActionDescription(press), QStringLiteral("Open in Browser"));
  EXPECT_EQ(list.child(0)->actionInterface(), nullptr) << "of a heading";
  hit.actionInterface()->doAction(press);
  EXPECT_EQ(host.calls, Texts()) << "the screen reader gets its answer first";
  EXPECT_TRUE(waitFor([&] { return host.calls == Texts{"open: https://www.youtube.com/watch?v=&t=2"}; }));
  EXPECT_EQ(stateOf(hit), "selectable focusable selected focused ");
  EXPECT_EQ(stateOf(*table.cellAt(1, 0)), "selectable focusable selected ");
  const QPoint middle = hit.rect().center();
  EXPECT_EQ(list.childAt(middle.x(), middle.y()), &hit);
  EXPECT_EQ(list.childAt(middle.x(), middle.y() + hit.rect().height()), nullptr);
  EXPECT_EQ(list.focusChild(), &hit);
  widget<QWidget>(SearchWin::Get().closeBtn).setFocus();
  EXPECT_EQ(list.focusChild(), nullptr);
  EXPECT_EQ(stateOf(hit), "selectable focusable selected ");
  SearchWin::Get().resultsList.RemoveRow(0);
  draw();
  EXPECT_EQ(nameOf(*table.cellAt(0, 1)), "two");
  EXPECT_EQ(list.childCount(), 4);
}

TEST_F(Desktop, AScreenReaderSelectsRows) {
  for (int row = 0; row < 40; ++row) form().Listbox1.AddRow("language " + std::to_string(row));
  draw();
  QAccessibleInterface& list = spoken(languages());
  QAccessibleTableInterface& table = *list.tableInterface();
  EXPECT_EQ(list.childCount(), 41) << "a hidden column is not spoken";
  EXPECT_TRUE(list.state().multiSelectable);
  for (const int row : {-1, 40}) EXPECT_FALSE(table.selectRow(row));
  EXPECT_TRUE(table.selectRow(2));
  const QString toggle = QAccessibleActionInterface::toggleAction();
  QAccessibleInterface& first = *table.cellAt(0, 0);
  EXPECT_EQ(first.actionInterface()->actionNames(), QStringList{toggle})
      << "a click does no more than select";
  first.actionInterface()->doAction(toggle);
  EXPECT_EQ(stateOf(first), "selectable focusable selected ");
  EXPECT_EQ(stateOf(*table.cellAt(39, 0)), "selectable focusable offscreen ");
  EXPECT_EQ(table.selectedRows(), (QList<int>{2, 0}));
  EXPECT_EQ(nameOf(*table.selectedCells().at(0)), "language 2");
  EXPECT_EQ(table.selectedCellCount(), 2);
  EXPECT_EQ(form().Listbox1.SelCount(), 2);
  first.actionInterface()->doAction(toggle);
  EXPECT_TRUE(form().Listbox1.Selected(2) && !form().Listbox1.Selected(0));
}

TEST_F(Desktop, AScreenReaderSelectsOneOfTheHits) {
  QAccessibleInterface& hits = spoken(showResults({{"00:00:01.500", "one"}, {"00:00:02.500", "two"}}));
  EXPECT_FALSE(hits.state().multiSelectable);
  for (const int row : {0, 1}) EXPECT_TRUE(hits.tableInterface()->selectRow(row));
  EXPECT_EQ(hits.tableInterface()->selectedRows(), QList<int>{1});
  EXPECT_EQ(hits.tableInterface()->selectedCells().size(), 2);
  EXPECT_TRUE(hits.tableInterface()->unselectRow(1));
  EXPECT_EQ(SearchWin::Get().resultsList.SelCount(), 0);
}

TEST_F(Desktop, ACommandIsAnnouncedWhenItStartsAndEndsAndWithdrawnLater) {
  aboutWin::Get().Show();
  form().Show();
  const auto announced = [&](const Window& window) {
    Texts texts;
    for (QWidget* each : view(window).findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (spoken(*each).role() != QAccessible::Notification) continue;
      texts.push_back(nameOf(spoken(*each)));
      EXPECT_EQ(stateOf(spoken(*each)), texts.back().empty() ? "invisible " : "");
    }
    return texts;
  };
  Texts during;
  const auto run = [&] {
    app->Command("Searching", [&] { during = announced(form()), app->progress.languages = 1; });
  };
  for (int i = 0; i < 2; ++i) {
    app->Dispatch(nullptr, run);
    EXPECT_EQ(during, (Texts{"Searching\u2026", ""}));
    EXPECT_EQ(announced(form()), (Texts{"Searching\u2026", "1 language"}));
    EXPECT_EQ(announced(aboutWin::Get()), (Texts{"", ""}));
  }
  EXPECT_TRUE(waitFor([&] { return announced(form()) == Texts{"", "1 language"}; }));
}

TEST_F(Desktop, ActionsOfAScreenReaderReachTheRecords) {
  const auto act = [&](const Control& control, const QString& action) {
    spoken(widget<QWidget>(control)).actionInterface()->doAction(action);
    QCoreApplication::processEvents();
    draw();
  };
  const QString toggle = QAccessibleActionInterface::toggleAction();
  for (RadioButton* chosen : {&form().SRTBox, &form().WebVTTBox, &form().TextBox, &form().SRTBox}) {
    act(*chosen, toggle);
    for (RadioButton* each : {&form().SRTBox, &form().WebVTTBox, &form().TextBox}) {
      EXPECT_EQ(each->Value(), each == chosen) << each->Name();
      EXPECT_EQ(widget<QAbstractButton>(*each).isChecked(), each == chosen) << each->Name();
    }
  }
  act(form().openBox, toggle);
  EXPECT_EQ(app->openDL, "false");
  widget<QAbstractButton>(form().lineBox).setEnabled(true);
  act(form().lineBox, toggle);
  EXPECT_FALSE(widget<QAbstractButton>(form().lineBox).isChecked()) << "its record is disabled";
  act(form().Canvas1, QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(waitFor([&] { return app->FindWindow("aboutWin") != nullptr; }));
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
