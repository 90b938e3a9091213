// Waits and running commands on a desktop: a wait sleeps until something happens, and the windows stay
// usable.

#include <unistd.h>

#include <QAccessible>
#include <array>

#include "desktop/tool_tips.h"
#include "desktop_fixture.h"

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST_F(Desktop, AStalledRequestSleepsUntilTheFormCloses) {
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  int before = 0, waits = 0;
  Clock::time_point closed;
  QTimer::singleShot(300, [&] { before = host.waits; });
  QTimer::singleShot(1000, [&] {
    waits = host.waits - before;
    closed = Clock::now();
    view(form()).close();
  });
  search(QStringLiteral("abc"));
  EXPECT_LT(Clock::now() - closed, milliseconds(500));
  EXPECT_LT(waits, 20) << "only the blinking cursor wakes it";
}

TEST_F(Desktop, EscapeAndTheStopButtonEndACommandAtOnce) {
  const auto hasText = [&](const QString& text) {
    const auto labels = view(form()).findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](QLabel* each) { return each->isVisible() && each->text() == text; });
  };
  for (const bool byKey : {true, false}) {
    server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
    Clock::time_point stopped;
    QTimer::singleShot(300, [&] {
      stopped = Clock::now();
      byKey ? press(Qt::Key_Escape) : view(form()).findChild<QPushButton*>(QStringLiteral("stop"))->click();
    });
    search(QStringLiteral("abc"));
    EXPECT_LT(Clock::now() - stopped, milliseconds(500));
    EXPECT_FALSE(app->IsCommandRunning());
    EXPECT_EQ(Window1::OpenOrNil(), &form());
    EXPECT_EQ(host.calls.size(), 0u) << "no message";
    EXPECT_TRUE(view(form()).findChild<QPushButton*>(QStringLiteral("stop"))->isHidden());
    EXPECT_TRUE(hasText(QStringLiteral("Stopped")));
  }
  press(Qt::Key_Escape);
  EXPECT_EQ(Window1::OpenOrNil(), &form()) << "there was nothing to stop";
  Offer(server, "abc", {{"en", "English", ""}});
  search(QStringLiteral("abc"));
  EXPECT_TRUE(hasText(QStringLiteral("1 language")));
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
  QStringList seen;
  std::size_t requests = 0;
  Clock::time_point closed;
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
    closed = Clock::now();
    view(form()).close();
  });
  search(QStringLiteral("abc"));
  EXPECT_LT(Clock::now() - closed, milliseconds(1000));
  EXPECT_EQ(seen, QStringList{QStringLiteral("Looking for captions\u2026")});
  EXPECT_EQ(requests, 1U);
  EXPECT_TRUE(host.hasLeft);
  EXPECT_TRUE(host.calls.empty()) << "an ended command shows no message";
}

TEST_F(Desktop, AWindowOpenedDuringACommandIsBusyUntilItsEnd) {
  const std::string name = std::string(200, 'w') + "?";
  const QString whole = QString::fromStdString(name) + QChar(u'\u2026');
  const auto expectStatus = [&](const Window& window, bool running) {
    const auto* stop = view(window).findChild<QPushButton*>(QStringLiteral("stop"));
    const auto* label = view(window).findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    const bool isBusy = running && &window != &aboutWin::Get();
    EXPECT_EQ(view(window).cursor().shape(), running ? Qt::BusyCursor : Qt::ArrowCursor);
    EXPECT_EQ(stop->isVisible(), isBusy);
    EXPECT_EQ(label->isVisible(), isBusy);
    if (!isBusy) return;
    EXPECT_EQ(stop->width(), stop->sizeHint().width());
    EXPECT_EQ(stop->x(), label->geometry().right() + 1);
    EXPECT_EQ(label->text(), label->fontMetrics().elidedText(whole, Qt::ElideMiddle, label->width()));
    EXPECT_EQ(label->accessibleName(), whole);
    EXPECT_EQ(tipOf(*label), whole);
    for (const QWidget* part : {static_cast<const QWidget*>(label), static_cast<const QWidget*>(stop)})
      EXPECT_EQ(view(window).childAt(part->geometry().center()), part) << "over the controls";
  };
  aboutWin::Get().Show();
  const auto isDisabled = [this] {
    return QAccessible::queryAccessibleInterface(&widget<QWidget>(SearchWin::Get().saveBtn))
        ->state()
        .disabled;
  };
  bool during = false;
  app->Dispatch(nullptr, [&] {
    app->Command(name, [&] {
      during = isDisabled();
      for (const auto& window : app->Windows()) expectStatus(*window, true);
    });
  });
  for (const auto& window : app->Windows()) expectStatus(*window, false);
  EXPECT_TRUE(during);
  EXPECT_FALSE(isDisabled());
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
