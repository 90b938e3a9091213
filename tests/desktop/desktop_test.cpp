// What a person does with the windows, from link to file.

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>

#include "desktop_fixture.h"

using Calls = std::vector<std::string>;

TEST_F(Desktop, SavesTheChosenLanguagesOfALink) {
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
  EXPECT_EQ(host.calls,
            (Calls{"save:  English.srt", "open: file://" + folder / "one.srt", "save:  German.srt"}));
  EXPECT_EQ(ReadFile(folder / "one.srt"),
            "1\n00:00:00,000 --> 00:00:02,500\nThe harbour wakes\n\n"
            "2\n00:01:02,500 --> 00:01:05,500\nA gull over the harbour\n\n");
  EXPECT_EQ(host.steps, (Calls{"English, 1 of 2", "German, 2 of 2"}));
  QStringList shown;
  for (const QLabel* label : view(form()).findChildren<QLabel*>()) shown << label->text();
  EXPECT_TRUE(shown.contains(QStringLiteral("1 saved, 1 cancelled"))) << "in no time but the user's";
  EXPECT_EQ(languages().selectionModel()->selectedRows().size(), 2);
}

TEST_F(Desktop, FindsAWordAndOpensTheVideoThere) {
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

TEST_F(Desktop, TakesTheWholeJobFromTheKeyboard) {
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

// Who is pressed by Return, by where the focus is.
TEST_F(Desktop, ReturnPressesTheButtonOfItsPlace) {
  const auto pressed = [&](const Control& focus) {
    host.calls.clear();
    widget<QWidget>(focus).setFocus();
    press(Qt::Key_Return);
    return host.calls.empty() ? std::string() : host.calls.front();
  };
  const auto startsWith = [](const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
  };
  EXPECT_EQ(pressed(form().TextField1), "message: Please paste a YouTube URL into the form first.");
  EXPECT_TRUE(pressed(form().searchField).ends_with("before you can do a word search."));
  EXPECT_TRUE(startsWith(pressed(form().Listbox1), "message: You must paste"));
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
  EXPECT_EQ(link().cursorPosition(), 2) << "the user is at work there";
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
  EXPECT_EQ(list.SelCount(), 3) << "rows that leave the view deselect nothing";
  list.AddRow("e");
  draw();
  QStringList selected;
  for (const QModelIndex& row : languages().selectionModel()->selectedRows())
    selected << row.data().toString();
  selected.sort();
  EXPECT_EQ(selected, (QStringList{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
  EXPECT_EQ(list.SelCount(), 3) << "showing it is no deed of a person";
  list.RemoveRowsFrom(0);
  draw();
  EXPECT_EQ(languages().model()->rowCount(), 0);
}

TEST_F(Desktop, WhatAScreenReaderDoesReachesTheRecords) {
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
  EXPECT_FALSE(widget<QAbstractButton>(form().lineBox).isChecked()) << "its record takes no clicks";
  act(form().Canvas1, QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(waitFor([&] { return app->FindWindow("aboutWin") != nullptr; }));
}

TEST_F(Desktop, ALinkIsDroppedAnywhereOnTheForm) {
  const auto drop = [&](QWidget& where, QMimeData& data) {
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&where, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&where, &dropped);
    draw();
    EXPECT_EQ(link().text().toStdString(), form().TextField1.Text());
    return form().TextField1.Text();
  };
  QMimeData address, text, nothing;
  address.setData(QStringLiteral("text/uri-list"), "https://youtu.be/abc\r\n");
  text.setText(QStringLiteral(" youtu.be/hB7rV2kQx0w?si=x\n"));
  EXPECT_EQ(drop(link(), address), "https://youtu.be/abc");
  EXPECT_EQ(drop(link(), text), "https://www.youtube.com/watch?v=hB7rV2kQx0w")
      << "in place of what stood there";
  EXPECT_EQ(drop(view(form()), address), "https://youtu.be/abc");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &nothing, Qt::LeftButton, Qt::NoModifier);
  enter.ignore();
  QApplication::sendEvent(&view(form()), &enter);
  EXPECT_FALSE(enter.isAccepted());
}

TEST_F(Desktop, APastedLinkTakesItsPlainFormAndATypedOneStays) {
  const QString shared = QStringLiteral("https://youtu.be/hB7rV2kQx0w?si=x");
  const std::string plain = "https://www.youtube.com/watch?v=hB7rV2kQx0w";
  QApplication::clipboard()->setText(shared);
  link().setFocus();
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), plain);
  EXPECT_EQ(link().text().toStdString(), plain);
  press(Qt::Key_A, Qt::ControlModifier);
  write(shared);
  EXPECT_EQ(form().TextField1.Text(), shared.toStdString());
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), shared.toStdString()) << "the same text over itself";
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), (shared + shared).toStdString()) << "into the middle of a text";
  press(Qt::Key_A, Qt::ControlModifier);
  link().paste();
  EXPECT_EQ(form().TextField1.Text(), plain);
  link().undo();
  draw();
  EXPECT_EQ(link().text(), shared) << "undone as any edit";
}

TEST_F(Desktop, WindowsCloseAndComeBack) {
  click(form().Canvas1);
  aboutWin& about = aboutWin::Get();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(about)));
  EXPECT_EQ(app->ActiveWindow(), &about);
  link().setText(QStringLiteral("old"));
  view(form()).close();
  EXPECT_EQ(app->FindWindow("Window1"), nullptr);
  EXPECT_FALSE(host.hasLeft);

  QTest::keyClick(&view(about), Qt::Key_N, Qt::ControlModifier);
  ASSERT_TRUE(app->FindWindow("Window1"));
  EXPECT_EQ(link().text(), QString()) << "a new form";
  click(about.BevelButton1);
  EXPECT_EQ(app->FindWindow("aboutWin"), nullptr);
  EXPECT_FALSE(host.hasLeft);
  view(form()).close();
  EXPECT_TRUE(host.hasLeft) << "the last window takes the program with it";
}

TEST_F(Desktop, AMinimisedWindowIsBroughtForward) {
  Offer(server, "abc", kTwoLanguages);
  search(QStringLiteral("abc"));
  clickRow(languages(), 0);
  form().searchField.PersonTypes("harbour");
  click(form().PushButton3);
  aboutWin::Get().Show();
  const struct {
    Window& window;
    std::function<void()> road;
  } cases[] = {{form(), [&] { app->ChooseMenuItem("FileNewWindow"); }},
               {aboutWin::Get(), [&] { app->ChooseMenuItem("FileAboutRavelyn"); }},
               {aboutWin::Get(), [&] { click(form().Canvas1); }},
               {SearchWin::Get(), [&] { click(form().PushButton3); }}};
  for (const auto& [window, road] : cases) {
    for (const Qt::WindowState kept : {Qt::WindowNoState, Qt::WindowMaximized}) {
      view(window).setWindowState(kept);
      view(window).showMinimized();
      ASSERT_TRUE(view(window).isMinimized());
      road();
      EXPECT_EQ(view(window).windowState() & ~Qt::WindowActive, kept) << window.Name();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&view(window))) << window.Name();
    }
  }
}

TEST_F(Desktop, OnlyAPersonsChangeOfSizeIsTold) {
  SearchWin& results = SearchWin::Get();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(results)));
  EXPECT_EQ(view(results).content().size(), QSize(600, 391));
  EXPECT_EQ(results.resultsList.Height(), 295);
  view(results).resize(700, 500);
  EXPECT_TRUE(waitFor([&] { return results.resultsList.Width() == 660; }));
  EXPECT_EQ(widget<QWidget>(results.saveBtn).geometry(), QRect(564, 460, 116, 20));
  EXPECT_EQ(view(form()).content().size(), QSize(562, 479)) << "with the menu bar above it";
}

TEST_F(Desktop, TheEditMenuActsOnTheFocusedText) {
  QMenu& menu = *view(form()).findChild<QMenuBar*>()->actions().at(1)->menu();
  const auto enabled = [&menu] {
    QStringList names;
    emit menu.aboutToShow();
    for (const QAction* action : menu.actions()) {
      if (action->isEnabled() && !action->isSeparator()) names << action->data().toString();
    }
    emit menu.aboutToHide();
    for (const QAction* action : menu.actions())
      EXPECT_TRUE(action->isEnabled()) << "or its shortcut is dead";
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

TEST_F(Desktop, ACommandRefusesASecondOneAndLeavesTheFormLive) {
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  QStringList seen;
  std::size_t requests = 0;
  std::chrono::steady_clock::time_point closed;
  QTimer::singleShot(100, [&] {
    requests = server.Requests().size();
    click(form().PushButton2);
    click(form().openBox, {8, 10});
    link().setFocus();
    write(QStringLiteral("!"));
    for (const QLabel* label : view(form()).findChildren<QLabel*>()) {
      if (label->isVisible() && label->text().startsWith(QStringLiteral("Looking"))) seen << label->text();
    }
  });
  QTimer::singleShot(300, [&] {
    EXPECT_EQ(server.Requests().size(), requests) << "the second was refused";
    EXPECT_FALSE(form().openBox.Value());
    EXPECT_TRUE(form().TextField1.Text().ends_with("!"));
    EXPECT_EQ(view(form()).cursor().shape(), Qt::BusyCursor);
    closed = std::chrono::steady_clock::now();
    view(form()).close();
  });
  search(QStringLiteral("abc"));
  EXPECT_LT(std::chrono::steady_clock::now() - closed, std::chrono::seconds(1));
  EXPECT_EQ(seen, QStringList{QStringLiteral("Looking for captions\u2026")});
  EXPECT_EQ(requests, 1U);
  EXPECT_TRUE(host.hasLeft);
  EXPECT_TRUE(host.calls.empty()) << "an ended command has nothing to say";
}

TEST_F(Desktop, AWindowThatComesDuringACommandShowsThatOneRuns) {
  const auto said = [this] {
    return QAccessible::queryAccessibleInterface(&widget<QWidget>(SearchWin::Get().saveBtn))
        ->state()
        .disabled;
  };
  bool during = false;
  app->Dispatch(nullptr, [&] { app->Command("Searching", [&] { during = said(); }); });
  EXPECT_TRUE(during);
  EXPECT_FALSE(said());
}

TEST_F(Desktop, AFormThatClosesTakesItsMessageAlong) {
  host.realMessages = true;
  for (const bool isLast : {false, true}) {
    if (!isLast) aboutWin::Get().Show();
    form().Show();
    QTimer::singleShot(50, [&] {
      const auto* box = standingDialog<QMessageBox>();
      ASSERT_TRUE(box);
      EXPECT_EQ(box->text(), QStringLiteral("This does not appear to be a YouTube URL."));
      form().PersonCloses();
    });
    form().TextField1.PersonTypes("no link");
    form().PushButton2.PersonClicks();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(standingDialog());
    EXPECT_EQ(host.hasLeft, isLast);
    if (!isLast) form().Show(), aboutWin::Get().PersonCloses();
  }
}

TEST_F(Desktop, ASaveDialogLeavesTheWindowsAlive) {
  host.realSaves = true;
  Offer(server, "abc", kTwoLanguages);
  const auto answerBy = [&](const std::function<void(QFileDialog&)>& act, bool behindAnother = false) {
    form().Show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view(form())));
    search(QStringLiteral("abc"));
    form().SRTBox.PersonClicks();
    clickRow(languages(), 1);
    if (behindAnother) aboutWin::Get().Show();
    QString title;
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, [&] {
      auto* dialog = standingDialog<QFileDialog>();
      if (!dialog) return;
      looking.stop();
      title = dialog->windowTitle();
      EXPECT_EQ(dialog->parentWidget(), &view(*app->ActiveWindow()));
      act(*dialog);
    });
    looking.start(1);
    form().PushButton1.PersonClicks();
    EXPECT_EQ(title, QStringLiteral("Save \u2013 German"));
    EXPECT_FALSE(standingDialog());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  answerBy([&](QFileDialog&) { QTest::keyClick(&link(), Qt::Key_Escape); });
  EXPECT_TRUE(form().Visible()) << "the command alone was stopped";
  const auto closeBoth = [&](QFileDialog& dialog) {
    aboutWin::Get().PersonCloses();
    EXPECT_EQ(standingDialog(), &dialog) << "it goes over to the form";
    EXPECT_EQ(dialog.parentWidget(), &view(form()));
    view(form()).close();
  };
  answerBy(closeBoth, true);
  EXPECT_TRUE(host.hasLeft);
  TearDown();
  start();
  host.hasLeft = false;
  answerBy([&](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Q, Qt::ControlModifier); });
  EXPECT_TRUE(host.hasLeft);
}

TEST_F(Desktop, AMessageThatComesUnaskedTakesNoKeys) {
  host.realMessages = true;
  link().setFocus();
  QTimer::singleShot(0, [&] {
    ASSERT_TRUE(standingDialog<QMessageBox>());
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_TRUE(standingDialog()->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(standingDialog()->parentWidget(), &view(form()));
    QTest::keyClick(&link(), Qt::Key_Escape);
  });
  app->Dispatch(nullptr, [] { MsgBox("Ravelyn cannot work without an Internet connection."); });
  EXPECT_FALSE(standingDialog()) << "Escape in the form dismisses it";
}

TEST_F(Desktop, ASaveDialogStartsWhereTheLastFileWent) {
  const TemporaryFolder folder;
  std::vector<std::string> folders;
  const auto ask = [&](const std::string& path) {
    QTimer::singleShot(0, [&] {
      auto* dialog = standingDialog<QFileDialog>();
      ASSERT_TRUE(dialog);
      folders.push_back(dialog->directory().path().toStdString());
      dialog->selectFile(QString::fromStdString(path));
      path.empty() ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
    });
    return host.QtPlatform::AskSavePath("", "German.srt");
  };
  EXPECT_EQ(ask(folder / "a.srt"), folder / "a.srt");
  EXPECT_EQ(ask(""), std::nullopt);
  EXPECT_EQ(ask(folder / "\xC3\xA9.srt"), folder / "\xC3\xA9.srt");
  for (const bool replaces : {false, true}) {
    WriteFile(folder / "a.srt", "kept");
    QTimer looking;
    bool declined = false;
    QObject::connect(&looking, &QTimer::timeout, [&] {
      auto* question = standingDialog<QMessageBox>();
      if (question) question->button(replaces ? QMessageBox::Yes : QMessageBox::No)->click();
      declined |= question && !replaces;
      if (auto* dialog = standingDialog<QFileDialog>(); dialog && declined) dialog->reject();
    });
    looking.start(5);
    EXPECT_EQ(ask(folder / "a.srt"), replaces ? std::optional(folder / "a.srt") : std::nullopt);
  }
  EXPECT_EQ(folders.at(1), folder.Path());
  EXPECT_EQ(folders.at(2), folder.Path()) << "also after one that was cancelled";
}

TEST_F(Desktop, AnOpenerThatFailsIsReportedWhenItEnds) {
  const TemporaryFolder programs;
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", (programs.Path() + ":" + path.toStdString()).c_str());
  host.opensByProgram = true;
  for (const int status : {3, 4, 0}) {
    WriteFile(programs / "xdg-open", "#!/bin/sh\necho \"$1\" > '" + programs / "opened" + "'\nexit " +
                                         std::to_string(status) + "\n");
    std::filesystem::permissions(programs / "xdg-open", std::filesystem::perms::owner_all);
    std::filesystem::remove(programs / "opened");
    const auto message = standingDialog<QMessageBox>;
    host.ShowURL("https://www.youtube.com/watch?v=a&t=1");
    EXPECT_EQ(message(), nullptr) << "the window is not kept waiting";
    QString text;
    const auto dismiss = [&] {
      if (!message()) return;
      text = message()->text();
      message()->accept();
    };
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, dismiss);
    looking.start(5);
    if (status != 0) {
      EXPECT_TRUE(
          waitFor([&] { return text.startsWith(QStringLiteral("No program could open this address:")); }));
    } else {
      // The shell makes the file before it writes the line.
      EXPECT_TRUE(waitFor([&] {
        return std::filesystem::exists(programs / "opened") && !ReadFile(programs / "opened").empty();
      }));
    }
    EXPECT_EQ(ReadFile(programs / "opened"), "https://www.youtube.com/watch?v=a&t=1\n");
  }
  qputenv("PATH", path);
}

TEST_F(Desktop, AnOpenerThatFailsDuringACommandLeavesItAlone) {
  const TemporaryFolder programs;
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", (programs.Path() + ":" + path.toStdString()).c_str());
  host.opensByProgram = true;
  WriteFile(programs / "xdg-open", "#!/bin/sh\nexit 3\n");
  std::filesystem::permissions(programs / "xdg-open", std::filesystem::perms::owner_all);
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  link().setFocus();
  QTimer looking;
  QObject::connect(&looking, &QTimer::timeout, [&] {
    if (!standingDialog()) return;
    looking.stop();
    EXPECT_TRUE(standingDialog()->testAttribute(Qt::WA_ShowWithoutActivating));
    QTest::keyClick(&link(), Qt::Key_Escape);
  });
  looking.start(5);
  host.ShowURL("https://www.youtube.com/watch?v=a");
  search(QStringLiteral("abc"));
  EXPECT_FALSE(app->IsCommandRunning()) << "Escape stopped it";
  ASSERT_TRUE(standingDialog<QMessageBox>()) << "and left the message";
  QTest::keyClick(standingDialog(), Qt::Key_Escape);
  EXPECT_FALSE(standingDialog());
  qputenv("PATH", path);
}

TEST_F(Desktop, WhatNothingOpensIsShownForCopying) {
  host.opens = false;
  std::vector<QString> texts;
  const auto dismiss = [&texts] {
    auto* box = standingDialog<QMessageBox>();
    ASSERT_TRUE(box);
    texts.push_back(box->text());
    for (QAbstractButton* button : box->buttons()) {
      if (box->buttonRole(button) == QMessageBox::ActionRole) button->click();
    }
    if (box->isVisible()) box->accept();
  };
  QTimer::singleShot(0, dismiss);
  host.ShowURL("https://www.youtube.com/watch?v=a b&t=1");
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("https://www.youtube.com/watch?v=a b&t=1"));
  QTimer::singleShot(0, dismiss);
  host.Launch("/tmp/a;\xC3\xA9.txt");
  QTimer::singleShot(0, dismiss);
  host.ShowURL("file:///etc/passwd");
  EXPECT_EQ(host.calls,
            (Calls{"open: https://www.youtube.com/watch?v=a%20b&t=1", "open: file:///tmp/a;%C3%A9.txt"}))
      << "only the web is browsed";
  ASSERT_EQ(texts.size(), 3U);
  EXPECT_TRUE(texts[1].endsWith(QStringLiteral("\n\n/tmp/a;\u00E9.txt")));
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
