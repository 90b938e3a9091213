// What a user does with the form, from link to file.

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
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("English\ten\nGerman\tde"));
  const auto selectedAfter = [&](Qt::Key key, Qt::KeyboardModifiers keys = {}) {
    press(key, keys);
    return std::pair(form().Listbox1.Selected(0), form().Listbox1.Selected(1));
  };
  EXPECT_EQ(selectedAfter(Qt::Key_End), std::pair(false, true));
  EXPECT_EQ(selectedAfter(Qt::Key_Home), std::pair(true, false));
  EXPECT_EQ(selectedAfter(Qt::Key_End, Qt::ControlModifier), std::pair(true, false))
      << "moves the focus alone";
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home}) {
    form().Listbox1.UserSelects({});
    draw();
    const bool down = key == Qt::Key_Down;  // selects the row with the focus
    EXPECT_EQ(selectedAfter(key), std::pair(!down, down));
  }
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
  EXPECT_TRUE(pressed(form().WebVTTBox).ends_with("download the transcripts."));
  const auto calls = [&](Qt::Key key, Qt::KeyboardModifiers keys) {
    host.calls.clear();
    press(key, keys);
    return host.calls.size();
  };
  EXPECT_EQ(calls(Qt::Key_Enter, Qt::KeypadModifier), 1U);
  EXPECT_EQ(calls(Qt::Key_Return, Qt::ShiftModifier), 0U);
  EXPECT_EQ(calls(Qt::Key_F5, {}), 0U);
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
  for (const std::vector<std::int64_t>& rows : {std::vector<std::int64_t>{0, 2, 3}, {1}, {}, {0, 1, 2, 3}}) {
    list.UserSelects(rows);
    draw();
    std::vector<std::int64_t> seen;
    for (int row = 0; row < 4; ++row) {
      if (languages().selectionModel()->isRowSelected(row)) seen.push_back(row);
    }
    EXPECT_EQ(seen, rows);
  }
  list.RemoveRowsFrom(0);
  draw();
  EXPECT_EQ(languages().model()->rowCount(), 0);
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
  const auto copyAll = [&] {
    EXPECT_EQ(enabled(), "EditSelectAll");
    app->ChooseMenuItem("EditSelectAll");
    EXPECT_EQ(enabled(), "EditCopy EditSelectAll");
    app->ChooseMenuItem("EditCopy");
    return QApplication::clipboard()->text().toStdString();
  };
  EXPECT_EQ(copyAll(), example.text().toStdString());
  for (const char* row : {"one", "two"}) form().Listbox1.AddRow(row);
  view(form()).resize(900, 700);
  ASSERT_TRUE(waitFor([&] { return form().Width() == 900; }));
  draw();
  languages().setFocus();
  EXPECT_EQ(copyAll(), "one\t\ntwo\t");
  widget<QWidget>(form().TextArea1).setFocus();
  EXPECT_EQ(enabled(), "");
  form().TextArea1.SetText("document");
  draw();
  EXPECT_EQ(copyAll(), "document");
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
