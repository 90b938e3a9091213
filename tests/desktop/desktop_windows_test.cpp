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

  QTest::keyClick(&view(about), Qt::Key_N, Qt::ControlModifier);
  ASSERT_TRUE(app->FindWindow("Window1"));
  EXPECT_EQ(link().text(), QString()) << "a new form";
  click(about.BevelButton1);
  EXPECT_EQ(app->FindWindow("aboutWin"), nullptr);
  EXPECT_FALSE(host.hasLeft);
  view(form()).close();
  EXPECT_TRUE(host.hasLeft) << "it was the last window";
}

namespace {

struct Raises : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    return count += event->type() == QEvent::ZOrderChange, false;
  }
  int count = 0;
};

}  // namespace

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
               {SearchWin::Get(), [&] { click(form().PushButton3); }}};
  for (const auto& [window, open] : cases) {
    for (const Qt::WindowState kept : {Qt::WindowNoState, Qt::WindowMaximized}) {
      view(window).setWindowState(kept);
      view(window).showMinimized();
      ASSERT_TRUE(view(window).isMinimized());
      Raises raises;
      view(window).installEventFilter(&raises);
      open();
      EXPECT_GT(raises.count, 0);
      EXPECT_EQ(view(window).windowState() & ~Qt::WindowActive, kept) << window.Name();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&view(window))) << window.Name();
    }
  }
}

TEST_F(Desktop, OnlyAResizeByTheUserMovesTheControls) {
  showResults({{"00:00:00.000", "cue"}});
  SearchWin& results = SearchWin::Get();
  EXPECT_EQ(results.resultsList.Width(), 560);
  view(results).resize(700, 500);
  EXPECT_TRUE(waitFor([&] { return results.resultsList.Width() == 660; }));
  const ListView& list = widget<ListView>(results.resultsList);
  EXPECT_EQ(list.columnWidth(0) + list.columnWidth(1), 658);
  EXPECT_EQ(widget<QWidget>(results.saveBtn).geometry(), QRect(564, 460, 116, 20));
}

TEST_F(Desktop, AViewThatForgotItsRecordReportsAndShowsNothing) {
  form().Listbox1.AddRow("English");
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
  EXPECT_EQ(form().Listbox1.SelCount(), 0);
  EXPECT_FALSE(form().SRTBox.Value());
  EXPECT_EQ(form().Width(), 562);
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
  const QPoint edge(picture.width() - 1, picture.height() / 2);
  EXPECT_NE(picture.grab().toImage().pixel(edge), before.pixel(edge)) << "shows the focus";
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_A, Qt::Key_Return, Qt::Key_Enter}) press(key);
  EXPECT_EQ(pressed, (std::vector<QPoint>{{7, 9}, {}, {}, {}}));
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
