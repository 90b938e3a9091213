// Windows: closed, minimised, brought forward, resized.

#include "desktop_fixture.h"

TEST_F(Desktop, ClosedWindowsComeBackAndTheLastOneQuits) {
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
  EXPECT_TRUE(host.hasLeft) << "it was the last window";
}

TEST_F(Desktop, ACommandForAMinimisedWindowRestoresIt) {
  Offer(server, "abc", kTwoLanguages);
  search(QStringLiteral("abc"));
  clickRow(languages(), 0);
  form().searchField.UserTypes("harbour");
  click(form().PushButton3);
  aboutWin::Get().Show();
  const struct {
    Window& window;
    std::function<void()> open;
  } cases[] = {{form(), [&] { app->ChooseMenuItem("FileNewWindow"); }},
               {aboutWin::Get(), [&] { app->ChooseMenuItem("FileAboutRavelyn"); }},
               {aboutWin::Get(), [&] { click(form().Canvas1); }},
               {SearchWin::Get(), [&] { click(form().PushButton3); }}};
  for (const auto& [window, open] : cases) {
    for (const Qt::WindowState kept : {Qt::WindowNoState, Qt::WindowMaximized}) {
      view(window).setWindowState(kept);
      view(window).showMinimized();
      ASSERT_TRUE(view(window).isMinimized());
      open();
      EXPECT_EQ(view(window).windowState() & ~Qt::WindowActive, kept) << window.Name();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&view(window))) << window.Name();
    }
  }
}

TEST_F(Desktop, OnlyAResizeByTheUserMovesTheControls) {
  SearchWin& results = SearchWin::Get();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(results)));
  EXPECT_EQ(view(results).content().size(), QSize(600, 391));
  EXPECT_EQ(results.resultsList.Height(), 295);
  view(results).resize(700, 500);
  EXPECT_TRUE(waitFor([&] { return results.resultsList.Width() == 660; }));
  const ListView& list = widget<ListView>(results.resultsList);
  EXPECT_EQ(list.columnWidth(0) + list.columnWidth(1), 658);
  EXPECT_EQ(widget<QWidget>(results.saveBtn).geometry(), QRect(564, 460, 116, 20));
  EXPECT_EQ(view(form()).content().size(), QSize(562, 479)) << "with the menu bar above it";
}

TEST_F(Desktop, AViewThatForgotItsRecordReportsAndShowsNothing) {
  Listbox& list = form().Listbox1;
  list.AddRow("English");
  draw();
  WindowView& seen = view(form());
  seen.forget();
  link().setText(QStringLiteral("typed"));
  clickRow(languages(), 0);
  for (const Control* control : form().Controls()) {
    if (seen.widgetOf(*control) && control != &form().Canvas1) click(*control, {8, 10});
  }
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_F10}) QTest::keyClick(&seen, key);
  seen.resize(700, 600);
  form().searchField.SetText("by code");
  form().searchField.SetFocus();
  draw();
  seen.bringForward();
  seen.close();
  EXPECT_EQ(form().TextField1.Text(), "");
  EXPECT_EQ(widget<QLineEdit>(form().searchField).text(), QString());
  EXPECT_EQ(list.SelCount(), 0);
  EXPECT_FALSE(form().SRTBox.Value());
  EXPECT_EQ(form().Width(), 562);
  EXPECT_EQ(languages().model()->index(0, 0).data(), QVariant());
  EXPECT_EQ(seen.controlOf(&link()), nullptr);
  EXPECT_TRUE(host.calls.empty());
  EXPECT_TRUE(form().Visible());
}

TEST_F(Desktop, OnlyASecondaryWindowClosesByKey) {
  for (const auto& [key, modifier] :
       {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_W, Qt::ControlModifier}}) {
    for (Window* window : {static_cast<Window*>(&aboutWin::Get()), static_cast<Window*>(&SearchWin::Get()),
                           static_cast<Window*>(&form())}) {
      window->Show();
      QTest::keyClick(&view(*window), Qt::Key_F10, Qt::ControlModifier);
      if (window != &form()) QTest::keyClick(&view(*window), Qt::Key_F10);
      EXPECT_FALSE(QApplication::activePopupWidget());
      const std::string name = window->Name();
      QTest::keyClick(&view(*window), key, modifier);
      EXPECT_EQ(app->FindWindow(name) != nullptr, name == "Window1") << name;
    }
  }
}

TEST_F(Desktop, APictureIsPressedByTheLeftButtonAndThreeKeys) {
  std::vector<QPoint> pressed;
  form().Canvas1.MouseDown = [&](int x, int y) {
    pressed.emplace_back(x, y);
    return true;
  };
  auto& picture = widget<QWidget>(form().Canvas1);
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton})
    QTest::mouseClick(&picture, button, {}, {7, 9});
  const QImage before = picture.grab().toImage();
  view(form()).setAttribute(Qt::WA_KeyboardFocusChange);
  picture.setFocus();
  EXPECT_NE(picture.grab().toImage(), before) << "shows the focus";
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_A, Qt::Key_Return, Qt::Key_Enter}) press(key);
  EXPECT_EQ(pressed, (std::vector<QPoint>{{7, 9}, {}, {}, {}}));
}

TEST_F(Desktop, AListReportsOnlyTheRowsThatChanged) {
  QString changes;
  const auto* model = languages().model();
  const auto note = [&](const QString& what, int from, int to) {
    changes += QStringLiteral("%1 %2-%3; ").arg(what).arg(from).arg(to);
  };
  QObject::connect(model, &QAbstractItemModel::rowsInserted, model,
                   [&](const QModelIndex&, int from, int to) { note(QStringLiteral("in"), from, to); });
  QObject::connect(model, &QAbstractItemModel::rowsRemoved, model,
                   [&](const QModelIndex&, int from, int to) { note(QStringLiteral("out"), from, to); });
  QObject::connect(model, &QAbstractItemModel::dataChanged, model,
                   [&](const QModelIndex& from, const QModelIndex& to) {
                     EXPECT_EQ(from.column() + 1, to.column());
                     note(QStringLiteral("new"), from.row(), to.row());
                   });
  Listbox& list = form().Listbox1;
  const auto after = [&](const std::function<void()>& change) {
    changes.clear();
    change();
    draw();
    return changes.toStdString();
  };
  EXPECT_EQ(after([&] { list.AddRow("a"), list.AddRow("b"); }), "in 0-1; ");
  EXPECT_EQ(after([&] { list.AddRow("c"); }), "new 1-1; in 2-2; ");
  EXPECT_EQ(after([&] { list.SetCell(2, 0, "C"); }), "new 2-2; ");
  EXPECT_EQ(after([&] { list.SetCell(0, 0, "A"); }), "new 0-2; ");
  EXPECT_EQ(after([&] { list.RemoveRow(0); }), "out 2-2; new 0-1; ");
  EXPECT_EQ(after([&] { list.RemoveRowsFrom(0); }), "out 0-1; ");
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
