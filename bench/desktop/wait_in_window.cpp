// ravelyn-wait-in-window HOST CLICKS: shows the program's form on the X display of DISPLAY, with the focus on
// a button. Prints on one line the processor time in ms and the wake-ups of 3 s of silence, first of the form
// at rest, then of the form during a Search that HOST never answers; then, in ms, the median and the longest
// time from a mouse click to its handler during that Search.

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "../QuietPlatform.h"
#include "../Turns.h"
#include "../Usage.h"
#include "app/App.h"
#include "app/Window1.h"
#include "desktop/QtPlatform.h"
#include "desktop/WindowView.h"
#include "ravelyn/commands.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kUntilCalm{700};  // for all drawing that follows the start
constexpr std::chrono::milliseconds kSilence{3000};

// The user's own preferences are neither read nor written.
class Host : public QtPlatform {
  std::string PreferencesFolder() override { return ""; }
};

// The cost of 3 s of waiting; then calls leave, which must make wait return.
Usage SilenceIn(const std::function<void()>& wait, const std::function<void()>& leave) {
  Usage before, spent;
  QTimer::singleShot(kUntilCalm, Qt::PreciseTimer, qApp, [&] { before = Usage::Now(); });
  QTimer::singleShot(kUntilCalm + kSilence, Qt::PreciseTimer, qApp, [&] {
    spent = Usage::Now() - before;
    leave();
  });
  wait();
  return spent;
}

// Clicks on one point of the screen; each click waits for the handler of the previous one.
class Mouse {
 public:
  explicit Mouse(QPoint at) : at_(at) {}
  ~Mouse() {
    if (thread_.joinable()) thread_.join();
  }
  Mouse(const Mouse&) = delete;
  Mouse& operator=(const Mouse&) = delete;

  // Returns at once; after the last click, done is called in the main thread.
  void Click(int clicks, const std::function<void()>& done) {
    thread_ = std::thread([this, clicks, done] {
      const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> screen(xcb_connect(nullptr, nullptr),
                                                                                &xcb_disconnect);
      Send(screen.get(), XCB_MOTION_NOTIFY, 0);
      for (int i = 0; i < clicks; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(40 + i * 17 % 60));
        clicked_ = Clock::now();
        Send(screen.get(), XCB_BUTTON_PRESS, 1);
        Send(screen.get(), XCB_BUTTON_RELEASE, 1);
        handled_.wait(i);
      }
      QMetaObject::invokeMethod(qApp, done);
    });
  }
  // To be called by the handler of a click.
  void Handled() {
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - clicked_.load()).count());
    ++handled_;
    handled_.notify_one();
  }
  std::vector<double> times;  // in ms, one for each click

 private:
  void Send(xcb_connection_t* screen, std::uint8_t what, std::uint8_t button) const {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(screen)).data->root;
    xcb_test_fake_input(screen, what, button, XCB_CURRENT_TIME, root, static_cast<std::int16_t>(at_.x()),
                        static_cast<std::int16_t>(at_.y()), 0);
    xcb_flush(screen);
  }

  QPoint at_;
  std::atomic<Clock::time_point> clicked_{};
  std::atomic<int> handled_{0};
  std::thread thread_;
};

QPoint OnScreen(const QWidget& widget) { return widget.mapToGlobal(QPoint(8, widget.height() / 2)); }

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  QApplication qt(count, arguments);
  Host platform;
  App app(platform, kCommands, LocalEndpoints(arguments[1]));
  app.Start();  // and the probe is over
  Window1& form = Window1::Get();
  platform.viewOf(form)->widgetOf(form.PushButton2)->setFocus();

  QEventLoop loop;
  const Usage rest = SilenceIn([&] { loop.exec(); }, [&] { loop.quit(); });
  Mouse mouse(OnScreen(*platform.viewOf(form)->widgetOf(form.openBox)));
  form.openBox.Action = [&] { mouse.Handled(); };
  form.TextField1.UserTypes("https://host/watch?v=silent");
  const Usage waiting = SilenceIn([&] { form.PushButton2.UserClicks(); },
                                  [&] { mouse.Click(std::stoi(arguments[2]), [&] { app.Quit(); }); });
  std::cout << rest.milliseconds << " " << rest.wakeUps << " " << waiting.milliseconds << " "
            << waiting.wakeUps << " " << Median(mouse.times) << " "
            << *std::max_element(mouse.times.begin(), mouse.times.end()) << "\n";
  platform.dropViews();
  app.Stop();
  return 0;
}
