#include "desktop/run.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "app/App.h"
#include "app/Window1.h"
#include "desktop/QtPlatform.h"

namespace {

int signalled = -1;  // an event counter, since a handler may do little more than write

void noteSignal(int) {
  const int before = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(signalled, &one, sizeof one);
  errno = before;
}

// One that was ignored from the start, as under nohup, stays so.
void takeSignal(int number) {
  struct sigaction action {};
  ::sigaction(number, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  ::sigaction(number, &action, nullptr);
}

void quitOnSignals(QtPlatform& platform) {
  signalled = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (signalled < 0) return;
  auto* const notifier = new QSocketNotifier(signalled, QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [&platform] {
    eventfd_t count = 0;
    ::eventfd_read(signalled, &count);
    platform.quit();
  });
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) takeSignal(number);
}

App* running = nullptr;

// Qt ends the process at once where its screen goes away, with the event loop still on the stack.
void saveAtExit() {
  if (running) running->commands.savePrefs();
}

void searchFor(const std::string& link) {
  Window1* form = Window1::OpenOrNil();
  if (form && !link.empty()) form->PersonHandsOver(link);
}

}  // namespace

int run(App& app, QtPlatform& platform, const std::string& link) {
  quitOnSignals(platform);
  // A session that ends may still change its mind: what could be lost is saved, and nothing ends before the
  // session closes the windows.
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, [&app] { app.commands.savePrefs(); });
  running = &app;
  std::atexit(saveAtExit);
  QTimer::singleShot(0, qApp, [&app] { app.Start(); });
  // Comes from within the start, which waits for the connection's probe.
  QTimer::singleShot(0, qApp, [&link] { searchFor(link); });
  const int result = QApplication::exec();
  platform.dropViews();
  app.Stop();
  running = nullptr;
  return result;
}
