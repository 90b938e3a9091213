// What a user does with the form, from link to file.

#include <QCheckBox>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>

#include "desktop_fixture.h"

TEST_F(Desktop, TheSelectedLanguagesOfALinkAreSaved) {
  const TemporaryFolder folder;
  Offer(server, "abc", kTwoLanguages);
  host.saves = {folder / "one.srt", std::nullopt};
  host.answering = 600;
  search(QStringLiteral("abc"));
  clickRow(languages(), 0);
  clickRow(languages(), 1, Qt::ControlModifier);
  click(form().SRTBox, {8, 10});
  draw();
  EXPECT_EQ(widget<QPushButton>(form().PushButton1).text(), QStringLiteral("Download SRT File(s)"));
  click(form().PushButton1);
  EXPECT_EQ(host.calls, (Texts{"save:  English.srt (English, 1 of 2)", "open: " + folder / "one.srt",
                               "save:  German.srt (German, 2 of 2)"}));
  EXPECT_EQ(statusOf(form()).text(), QStringLiteral("1 saved, 1 cancelled"))
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
  clickRow(hits, 1, {}, 1);
  hits.setFocus();
  press(Qt::Key_Up);
  press(Qt::Key_Return);
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
  const std::string video = "open: https://www.youtube.com/watch?v=abc&t=";
  EXPECT_EQ(host.calls, (Texts{video + "62", video + "0", video + "0"}));
}

TEST_F(Desktop, AllRowsCanBeSelectedIfThereIsOne) {
  for (const int rows : {0, 1}) {
    if (rows > 0) form().Listbox1.AddRow("English");
    draw();
    languages().setFocus();
    press(Qt::Key_F10, Qt::ShiftModifier);
    auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    QTest::keyClick(menu, Qt::Key_Up);
    QTest::keyClick(menu, Qt::Key_Return);
    menu->close();
    EXPECT_EQ(form().Listbox1.SelCount(), rows);
  }
}

TEST_F(Desktop, TheKeyboardAloneDoesTheWholeJob) {
  const TemporaryFolder folder;
  Offer(server, "abc", kTwoLanguages);
  host.saves = {folder / "text.txt"};
  const auto tabTo = [&](const std::string& name) {
    for (int i = 0; i < 20 && nameOfFocus() != name; ++i) press(Qt::Key_Tab), draw();
    EXPECT_EQ(nameOfFocus(), name);
  };
  write(QStringLiteral("youtu.be/abc"));
  press(Qt::Key_Return);
  draw();
  tabTo("Listbox1");
  press(Qt::Key_Down);
  EXPECT_TRUE(form().Listbox1.Selected(0));
  press(Qt::Key_A, Qt::ControlModifier);
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
  for (const char* box : {"TextBox", "lineBox", "openBox"}) {
    tabTo(box);
    press(Qt::Key_Space);
    draw();
  }
  press(Qt::Key_Return);
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
  EXPECT_TRUE(pressed(form().Listbox1).ends_with("download the transcripts."));
  EXPECT_TRUE(pressed(form().PushButton3).ends_with("before you can do a word search."));
  EXPECT_EQ(nameOfFocus(), "TextField1") << "the command puts it there";
  EXPECT_TRUE(pressed(form().WebVTTBox).ends_with("download the transcripts."));
  press(Qt::Key_Return, Qt::ShiftModifier);
  press(Qt::Key_F5);
  EXPECT_EQ(host.calls.size(), 1U);
  press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(host.calls.size(), 2U);
}

TEST_F(Desktop, RecordsAndWidgetsFollowEachOther) {
  form().TextField1.SetText("by code");
  form().openBox.SetValue(false);
  form().SRTBox.SetValue(true);
  EXPECT_EQ(link().text(), QString()) << "not before the frame is due";
  ASSERT_TRUE(waitFor([&] { return link().text() == QStringLiteral("by code"); }));
  EXPECT_FALSE(widget<QCheckBox>(form().openBox).isChecked());
  link().setCursorPosition(2);
  form().TextField1.SetText("by code again");
  draw();
  EXPECT_EQ(link().cursorPosition(), 2) << "the user may be typing there";
  link().selectAll();
  QApplication::clipboard()->setText(QStringLiteral("two\nlines"));
  link().paste();
  draw();
  EXPECT_EQ(form().TextField1.Text(), "twolines");
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
  list.RemoveRow(0);
  draw();
  EXPECT_EQ(list.SelCount(), 3) << "a removed row deselects no other";
  list.AddRow("e");
  using Rows = std::vector<std::int64_t>;
  const auto seen = [&] {
    draw();
    Rows rows;
    for (int row = 0; row < 4; ++row) {
      if (languages().selectionModel()->isRowSelected(row)) rows.push_back(row);
    }
    return rows;
  };
  EXPECT_EQ(seen(), (Rows{0, 1, 2}));
  EXPECT_EQ(list.SelCount(), 3) << "showing a selection is no selection by the user";
  for (const Rows& rows : {Rows{0, 2, 3}, {1}, {}, {0, 1, 2, 3}}) {
    list.UserSelects(rows);
    EXPECT_EQ(seen(), rows);
  }
}

TEST_F(Desktop, AListDrawsOnlyChangedRowsAgain) {
  Texts drawn;
  QObject::connect(languages().model(), &QAbstractItemModel::dataChanged,
                   [&drawn](const QModelIndex& from, const QModelIndex& to) {
                     drawn.push_back(std::to_string(from.row()) + " to " + std::to_string(to.row()));
                   });
  for (const char* row : {"a", "b", "c"}) form().Listbox1.AddRow(row), draw();
  form().Listbox1.RemoveRow(0);
  draw();
  EXPECT_EQ(drawn, (Texts{"0 to 0", "1 to 1", "0 to 1"}));
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
  form().TextArea1.SetText("document");
  draw();
  EXPECT_EQ(copyAll(), "document");
  widget<QWidget>(form().openBox).setFocus();
  EXPECT_EQ(enabled(), "");
}

TEST_F(Desktop, F10OpensTheMenuAndF1TheHelp) {
  press(Qt::Key_F10);
  auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_TRUE(menu);
  EXPECT_EQ(menu->activeAction()->text(), QStringLiteral("&Quit"));
  menu->close();
  press(Qt::Key_F1);
  EXPECT_EQ(host.calls, Texts{"open: http://" + app->endpoints.ProductPage});
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
