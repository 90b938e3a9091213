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
  EXPECT_EQ(widget<QWidget>(results.saveBtn).geometry(), QRect(564, 460, 116, 20));
  EXPECT_EQ(view(form()).content().size(), QSize(562, 479)) << "with the menu bar above it";
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
