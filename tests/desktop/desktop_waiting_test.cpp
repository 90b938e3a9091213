// Waits and running commands on a desktop: a wait sleeps until something happens, and the windows stay
// usable.

#include <unistd.h>

#include <QAccessible>
#include <array>

#include "desktop/tool_tips.h"
#include "desktop_fixture.h"

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST_F(Desktop, EscapeAndTheStopButtonEndACommandAtOnce) {
  for (const bool byKey : {true, false}) {
    server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
    Clock::time_point stopped;
    host.waits = 0;
    QTimer::singleShot(300, [&] {
      EXPECT_LT(host.waits, 40) << "it sleeps";
      stopped = Clock::now();
      byKey ? press(Qt::Key_Escape) : stopOf(form()).click();
    });
    search(QStringLiteral("abc"));
    EXPECT_LT(Clock::now() - stopped, milliseconds(500));
    EXPECT_EQ(Window1::OpenOrNil(), &form());
    EXPECT_EQ(host.calls, Texts()) << "no message";
    EXPECT_TRUE(stopOf(form()).isHidden());
    EXPECT_EQ(statusOf(form()).text(), QStringLiteral("Stopped"));
  }
  press(Qt::Key_Escape);
  EXPECT_EQ(Window1::OpenOrNil(), &form()) << "there was nothing to stop";
}

TEST_F(Desktop, AWaitEndsWithItsDescriptorOrItsTime) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const auto start = Clock::now();
  while (Clock::now() - start < milliseconds(50)) host.ProcessEvents(50, {ends[0], true, false});
  EXPECT_LT(host.waits, 20);
  host.ProcessEvents(60'000, {ends[1], false, true});
  // A descriptor that is ready wakes its own wait, but not the waits inside its handlers.
  host.waits = 0;
  QTimer::singleShot(0, [&] {
    EXPECT_EQ(::write(ends[1], "x", 1), 1);
    const auto end = Clock::now() + milliseconds(200);
    while (Clock::now() < end) host.ProcessEvents(200, {});
  });
  while (host.waits == 0) host.ProcessEvents(60'000, {ends[0], true, false});
  EXPECT_LT(host.waits, 20);
  // A blinking cursor would end each of these waits too, but only after a quarter of a second or more.
  for (int i = 0; i < 60; ++i) host.ProcessEvents(60'000, {ends[0], true, false});
  EXPECT_LT(Clock::now() - start, milliseconds(8'000));
  for (const int end : ends) ::close(end);
}

TEST_F(Desktop, ARunningCommandRefusesASecondOneAndLeavesTheFormUsable) {
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  QTimer::singleShot(100, [&] {
    click(form().PushButton2);
    click(form().openBox, {8, 10});
    link().setFocus();
    write(QStringLiteral("!"));
    EXPECT_EQ(statusOf(form()).text(), QStringLiteral("Looking for captions\u2026"));
  });
  QTimer::singleShot(300, [&] {
    EXPECT_EQ(server.Requests().size(), 1U) << "the second was refused";
    EXPECT_FALSE(form().openBox.Value());
    EXPECT_TRUE(form().TextField1.Text().ends_with("!"));
    view(form()).close();
  });
  search(QStringLiteral("abc"));
  EXPECT_TRUE(host.hasLeft);
  EXPECT_EQ(host.calls, Texts()) << "an ended command shows no message";
}

TEST_F(Desktop, AWindowOpenedDuringACommandIsBusyUntilItsEnd) {
  const std::string name(200, 'w');
  const QString whole = QString::fromStdString(name) + QChar(u'\u2026');
  const auto expectStatus = [&](const Window& window, bool running) {
    const QLabel& label = statusOf(window);
    const QPushButton& stop = stopOf(window);
    const bool isBusy = running && &window != &aboutWin::Get();
    EXPECT_EQ(view(window).cursor().shape(), running ? Qt::BusyCursor : Qt::ArrowCursor);
    EXPECT_EQ(stop.isVisible(), isBusy);
    EXPECT_EQ(label.isVisible(), isBusy);
    if (!isBusy) return;
    EXPECT_EQ(stop.width(), stop.sizeHint().width());
    EXPECT_EQ(stop.x(), label.geometry().right() + 1);
    EXPECT_EQ(label.text(), label.fontMetrics().elidedText(whole, Qt::ElideMiddle, label.width()));
    EXPECT_EQ(label.accessibleName(), whole);
    EXPECT_EQ(tipOf(label), whole);
    EXPECT_EQ(view(window).childAt(stop.geometry().center()), &stop) << "over the controls";
  };
  aboutWin::Get().Show();
  auto& save = *QAccessible::queryAccessibleInterface(&widget<QWidget>(SearchWin::Get().saveBtn));
  app->Dispatch(nullptr, [&] {
    app->Command(name, [&] {
      EXPECT_TRUE(save.state().disabled);
      for (const auto& window : app->Windows()) expectStatus(*window, true);
    });
  });
  EXPECT_FALSE(save.state().disabled);
  for (const auto& window : app->Windows()) expectStatus(*window, false);
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
