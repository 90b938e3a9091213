// The program on Qt's offscreen platform, with a loopback server, driven by the events that a keyboard and a
// mouse send. Its host answers dialogs as scripted, records what it is asked, and opens nothing in other
// programs.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <array>
#include <deque>
#include <memory>

#include "app/App.h"
#include "app/Window1.h"
#include "app/aboutWin.h"
#include "desktop/ListView.h"
#include "desktop/QtPlatform.h"
#include "desktop/WindowView.h"
#include "ravelyn/commands.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/captions.h"
#include "wordsearch/SearchWin.h"

using Texts = std::vector<std::string>;

class TestHost : public QtPlatform {
 public:
  TestHost() {
    leaveLoop = [this] { hasLeft = true; };
  }

  Texts calls;  // "message: ...", "save: FILTER NAME (STEP)", "open: ADDRESS or PATH"
  std::deque<std::optional<std::string>> saves;  // answers to the next save dialogs; later ones are cancelled
  bool realMessages = false, realSaves = false;  // shows them as well
  bool realOpening = false;                      // by the first xdg-open in PATH
  bool hasLeft = false;
  int waits = 0;               // calls that may sleep
  int deliveries = 0;          // calls that may not
  std::int64_t answering = 0;  // ticks that each answer to a save dialog takes
  TemporaryFolder prefs;

  void MessageBox(const std::string& text, const std::string& cause) override {
    calls.push_back("message: " + text);
    if (realMessages) QtPlatform::MessageBox(text, cause);
  }
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override {
    calls.push_back("save: " + filter + " " + name + " (" + App::Get().CommandStep() + ")");
    ahead_ += answering;
    if (realSaves) return QtPlatform::AskSavePath(filter, name);
    if (saves.empty()) return std::nullopt;
    auto answer = saves.front();
    saves.pop_front();
    return answer;
  }
  void ShowURL(const std::string& address) override {
    realOpening ? QtPlatform::ShowURL(address) : calls.push_back("open: " + address);
  }
  void Launch(const std::string& path) override {
    realOpening ? QtPlatform::Launch(path) : calls.push_back("open: " + path);
  }
  std::string PreferencesFolder() override { return prefs.Path(); }
  void ProcessEvents(int milliseconds, const Awaited& awaited) override {
    ++(milliseconds > 0 ? waits : deliveries);
    QtPlatform::ProcessEvents(milliseconds, awaited);
  }

  std::int64_t Ticks() override { return QtPlatform::Ticks() + ahead_; }

 private:
  std::int64_t ahead_ = 0;
};

// nullptr if there is none.
template <typename D = QDialog>
D* shownDialog() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* dialog = dynamic_cast<D*>(window);
    if (dialog && dialog->isVisible()) return dialog;
  }
  return nullptr;
}

inline bool waitFor(const std::function<bool()>& happens) { return QTest::qWaitFor(happens, 5000); }

// Calls isTime between the program's other events until it is true, and then act.
inline void when(const std::function<bool()>& isTime, const std::function<void()>& act) {
  auto* const turn = new QTimer(qApp);
  QObject::connect(turn, &QTimer::timeout, turn, [turn, isTime, act] {
    if (!isTime()) return;
    turn->stop();
    turn->deleteLater();
    act();
  });
  turn->start(0);
}

class Desktop : public ::testing::Test {
 protected:
  void SetUp() override {
    app = std::make_unique<App>(host, kCommands, EndpointsAt(server.Host()));
    app->Start();
    host.calls.clear();  // of the probe's message on a machine without ping
    ASSERT_TRUE(QTest::qWaitForWindowActive(host.viewOf(form())));
  }
  void TearDown() override {
    host.dropViews();
    if (app) app->Stop();
  }

  static Window1& form() { return Window1::Get(); }
  WindowView& view(const Window& window) { return *host.viewOf(window); }
  template <typename W>
  W& widget(const Control& control) {
    return dynamic_cast<W&>(*view(control.Owner()).widgetOf(control));
  }
  QLineEdit& link() { return widget<QLineEdit>(form().TextField1); }
  ListView& languages() { return widget<ListView>(form().Listbox1); }

  void click(const Control& control, QPoint at = {}) {
    QTest::mouseClick(&widget<QWidget>(control), Qt::LeftButton, {}, at);
  }
  void clickRow(ListView& list, int row, Qt::KeyboardModifiers keys = {}, int column = 0) {
    const QPoint at = list.visualRect(list.model()->index(row, column)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, at);
  }
  // Presses a key in the focused widget.
  static void press(Qt::Key key, Qt::KeyboardModifiers keys = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, keys);
  }
  static void write(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  // Draws the frame that is due.
  void draw() {
    for (const auto& window : app->Windows()) {
      if (host.viewOf(*window)) view(*window).flush();
    }
  }
  // Types a link into the field and presses Return.
  void search(const QString& code) {
    link().setFocus();
    link().selectAll();
    write(QStringLiteral("https://www.youtube.com/watch?v=") + code);
    press(Qt::Key_Return);
    draw();
  }
  // Opens the results with these times and texts.
  ListView& showResults(const std::vector<std::array<std::string, 2>>& hits) {
    Listbox& results = SearchWin::Get().resultsList;
    for (const auto& [time, text] : hits) {
      results.AddRow(time);
      results.SetCell(results.LastIndex(), 1, text);
    }
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
    draw();
    return widget<ListView>(results);
  }
  QPushButton& stopOf(const Window& window) {
    return *view(window).findChild<QPushButton*>(QStringLiteral("stop"));
  }
  QLabel& statusOf(const Window& window) {
    return *view(window).findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
  }
  std::string nameOfFocus() { return app->FocusedControl()->Name(); }

  LoopbackServer server;
  TestHost host;
  std::unique_ptr<App> app;
};

// Two languages of one video.
inline const std::vector<Track> kTwoLanguages = {
    {"en", "English",
     Document({{"0", "2.5", "The harbour wakes"}, {"62.5", "3", "A gull over the harbour"}})},
    {"de", "German", Document({{"1.5", "2", "Der Hafen erwacht"}})},
};

inline int runOffscreen(int count, char** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
