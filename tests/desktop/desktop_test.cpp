// What a user does with the form, from link to file.

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>

#include "desktop_fixture.h"

using Calls = std::vector<std::string>;

TEST_F(Desktop, TheSelectedLanguagesOfALinkAreSaved) {
  const TemporaryFolder folder;
  Offer(server, "abc", kTwoLanguages);
  host.saves = {folder / "one.srt", std::nullopt};
  host.answering = 600;
  search(QStringLiteral("abc"));
  ASSERT_EQ(languages().model()->rowCount(), 2);
  EXPECT_EQ(languages().model()->index(1, 0).data().toString(), QStringLiteral("German"));

  clickRow(languages(), 0);
  clickRow(languages(), 1, Qt::ControlModifier);
  EXPECT_EQ(form().Listbox1.SelCount(), 2);
  click(form().SRTBox, {8, 10});
  draw();
  EXPECT_EQ(widget<QPushButton>(form().PushButton1).text(), QStringLiteral("Download SRT File(s)"));
  click(form().PushButton1);
  EXPECT_EQ(host.calls, (Calls{"save:  English.srt", "open: " + folder / "one.srt", "save:  German.srt"}));
  EXPECT_EQ(ReadFile(folder / "one.srt"),
            "1\n00:00:00,000 --> 00:00:02,500\nThe harbour wakes\n\n"
            "2\n00:01:02,500 --> 00:01:05,500\nA gull over the harbour\n\n");
  EXPECT_EQ(host.steps, (Calls{"English, 1 of 2", "German, 2 of 2"}));
  QStringList shown;
  for (const QLabel* label : view(form()).findChildren<QLabel*>()) shown << label->text();
  EXPECT_TRUE(shown.contains(QStringLiteral("1 saved, 1 cancelled")))
      << "no time is shown: the user alone took it";
  EXPECT_EQ(languages().selectionModel()->selectedRows().size(), 2);
}

TEST_F(Desktop, AWordIsFoundAndTheVideoOpenedThere) {
  Offer(server, "abc", kTwoLanguages);
  search(QStringLiteral("abc"));
  clickRow(languages(), 0);
  widget<QLineEdit>(form().searchField).setFocus();
  write(QStringLiteral("HARBOUR"));
  press(Qt::Key_Return);

  ListView& hits = widget<ListView>(SearchWin::Get().resultsList);
  ASSERT_TRUE(QTest::qWaitForWindowActive(hits.window()));
  draw();
  ASSERT_EQ(hits.model()->rowCount(), 2);
  clickRow(hits, 1, {}, 1);
  EXPECT_EQ(host.calls, Calls{"open: https://www.youtube.com/watch?v=abc&t=62"});
  hits.setFocus();
  press(Qt::Key_Up);
  press(Qt::Key_Return);
  EXPECT_EQ(host.calls.back(), "open: https://www.youtube.com/watch?v=abc&t=0");
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("00:00:00.000\tThe harbour wakes"));
  press(Qt::Key_F10, Qt::ShiftModifier);
  auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_TRUE(menu);
  QStringList items;
  for (const QAction* item : menu->actions()) items << item->text() + QString::number(item->isEnabled());
  EXPECT_EQ(items, (QStringList{"Open in Browser1", "Copy1", "Select All0"}));
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(host.calls.size(), 3U);
  EXPECT_EQ(host.calls.back(), "open: https://www.youtube.com/watch?v=abc&t=0");
  EXPECT_EQ(hits.accessibleName(), QStringLiteral("Displaying 2 results for search term: \"HARBOUR\"."));

  click(SearchWin::Get().closeBtn);
  EXPECT_EQ(app->FindWindow(SearchWin::kName), nullptr);
}

TEST_F(Desktop, TheKeyboardAloneDoesTheWholeJob) {
  const TemporaryFolder folder;
  Offer(server, "abc", kTwoLanguages);
  host.saves = {folder / "text.txt"};
  EXPECT_EQ(nameOfFocus(), "TextField1");
  write(QStringLiteral("youtu.be/abc"));
  press(Qt::Key_Return);
  draw();
  press(Qt::Key_Tab);
  EXPECT_EQ(nameOfFocus(), "PushButton2");
  press(Qt::Key_Tab);
  EXPECT_EQ(nameOfFocus(), "Listbox1");
  press(Qt::Key_Down);
  EXPECT_TRUE(form().Listbox1.Selected(0));
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(form().Listbox1.SelCount(), 2);
  press(Qt::Key_End);
  press(Qt::Key_Home);
  EXPECT_EQ(form().Listbox1.SelCount(), 1);
  const auto tabTo = [&](const std::string& name) {
    for (int i = 0; i < 20 && nameOfFocus() != name; ++i) press(Qt::Key_Tab), draw();
    EXPECT_EQ(nameOfFocus(), name);
  };
  tabTo("TextBox");
  press(Qt::Key_Space);
  draw();
  tabTo("lineBox");
  press(Qt::Key_Space);
  tabTo("openBox");
  press(Qt::Key_Space);
  press(Qt::Key_Return);
  EXPECT_EQ(host.calls, Calls{"save: text/plain English.txt"});
  EXPECT_EQ(ReadFile(folder / "text.txt"), "The harbour wakes\nA gull over the harbour\n");
  tabTo("Canvas1");
  press(Qt::Key_Space);
  EXPECT_TRUE(app->FindWindow("aboutWin"));
}

TEST_F(Desktop, ReturnPressesTheButtonThatBelongsToTheFocus) {
  const auto pressed = [&](const Control& focus) {
    host.calls.clear();
    widget<QWidget>(focus).setFocus();
    press(Qt::Key_Return);
    return host.calls.empty() ? std::string() : host.calls.front();
  };
  EXPECT_EQ(pressed(form().TextField1), "message: Please paste a YouTube URL into the form first.");
  EXPECT_TRUE(pressed(form().searchField).ends_with("before you can do a word search."));
  EXPECT_TRUE(pressed(form().Listbox1).starts_with("message: You must paste"));
  EXPECT_TRUE(pressed(form().openBox).ends_with("download the transcripts."));
  EXPECT_TRUE(pressed(form().PushButton3).ends_with("before you can do a word search."));
  EXPECT_EQ(nameOfFocus(), "TextField1") << "the command puts it there";
}

TEST_F(Desktop, RecordsAndWidgetsFollowEachOther) {
  form().TextField1.SetText("by code");
  form().openBox.SetValue(false);
  form().SRTBox.SetValue(true);
  form().Listbox1.AddRow("one");
  EXPECT_EQ(link().text(), QString()) << "not before the frame is due";
  ASSERT_TRUE(waitFor([&] { return link().text() == QStringLiteral("by code"); }));
  EXPECT_FALSE(widget<QCheckBox>(form().openBox).isChecked());
  EXPECT_EQ(languages().model()->rowCount(), 1);
  EXPECT_FALSE(widget<QWidget>(form().paragraphBox).isEnabled());

  link().setCursorPosition(2);
  form().TextField1.SetText("by code again");
  draw();
  EXPECT_EQ(link().cursorPosition(), 2) << "the user may be typing there";
  link().selectAll();
  QApplication::clipboard()->setText(QStringLiteral("two\nlines"));
  link().paste();
  draw();
  EXPECT_EQ(form().TextField1.Text(), "twolines");
  EXPECT_EQ(link().text(), QStringLiteral("twolines"));
  const QString lengthy(40'000, QChar(u'x'));
  link().setText(lengthy);
  EXPECT_EQ(form().TextField1.Text().size(), 40'000U);

  form().SRTBox.SetValue(false);
  draw();
  EXPECT_FALSE(widget<QAbstractButton>(form().SRTBox).isChecked()) << "all buttons of the group can be off";
}

TEST_F(Desktop, AListKeepsItsSelectionThroughChanges) {
  Listbox& list = form().Listbox1;
  for (const char* row : {"a", "b", "c", "d"}) list.AddRow(row);
  draw();
  clickRow(languages(), 1);
  clickRow(languages(), 3, Qt::ShiftModifier);
  EXPECT_EQ(list.SelCount(), 3);
  list.RemoveRow(0);
  draw();
  EXPECT_EQ(list.SelCount(), 3) << "a removed row deselects no other";
  list.AddRow("e");
  draw();
  QStringList selected;
  for (const QModelIndex& row : languages().selectionModel()->selectedRows())
    selected << row.data().toString();
  selected.sort();
  EXPECT_EQ(selected, (QStringList{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
  EXPECT_EQ(list.SelCount(), 3) << "showing a selection is no selection by the user";
  list.RemoveRowsFrom(0);
  draw();
  EXPECT_EQ(languages().model()->rowCount(), 0);
}

TEST_F(Desktop, ActionsOfAScreenReaderReachTheRecords) {
  const auto act = [&](const Control& control, const QString& action) {
    QAccessible::queryAccessibleInterface(&widget<QWidget>(control))->actionInterface()->doAction(action);
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
  EXPECT_EQ(app->checkedDL, "SRT");
  act(form().openBox, toggle);
  EXPECT_EQ(app->openDL, "false");
  act(form().openBox, toggle);
  EXPECT_EQ(app->openDL, "true");
  widget<QAbstractButton>(form().lineBox).setEnabled(true);
  act(form().lineBox, toggle);
  EXPECT_FALSE(widget<QAbstractButton>(form().lineBox).isChecked()) << "its record is disabled";
  act(form().Canvas1, QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(waitFor([&] { return app->FindWindow("aboutWin") != nullptr; }));
}

TEST_F(Desktop, TheEditMenuActsOnTheFocusedWidget) {
  QMenu& menu = *view(form()).findChild<QMenuBar*>()->actions().at(1)->menu();
  const auto enabled = [&menu] {
    QStringList names;
    emit menu.aboutToShow();
    for (const QAction* action : menu.actions()) {
      if (action->isEnabled() && !action->isSeparator()) names << action->data().toString();
    }
    emit menu.aboutToHide();
    for (const QAction* action : menu.actions())
      EXPECT_TRUE(action->isEnabled()) << "or its shortcut does nothing";
    return names.join(QChar(u' ')).toStdString();
  };
  QApplication::clipboard()->setText(QStringLiteral("pasted"));
  EXPECT_EQ(enabled(), "EditPaste");
  write(QStringLiteral("typed"));
  link().selectAll();
  EXPECT_EQ(enabled(), "EditUndo EditCut EditCopy EditPaste EditClear EditSelectAll");
  app->ChooseMenuItem("EditCut");
  EXPECT_EQ(form().TextField1.Text(), "");
  app->ChooseMenuItem("EditUndo");
  EXPECT_EQ(form().TextField1.Text(), "typed");
  auto& example = widget<QLabel>(form().Label4);
  example.setFocus();
  app->ChooseMenuItem("EditSelectAll");
  app->ChooseMenuItem("EditCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), example.text());
  EXPECT_EQ(enabled(), "EditCopy EditSelectAll");
  widget<QWidget>(form().openBox).setFocus();
  EXPECT_EQ(enabled(), "");
  press(Qt::Key_F10);
  ASSERT_TRUE(QApplication::activePopupWidget());
  EXPECT_EQ(dynamic_cast<QMenu&>(*QApplication::activePopupWidget()).activeAction()->text(),
            QStringLiteral("&Quit"));
  QApplication::activePopupWidget()->close();
  press(Qt::Key_F1);
  EXPECT_EQ(host.calls, Calls{"open: http://" + app->endpoints.ProductPage});
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
