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
#include "desktop/pictures.h"

namespace {

int signalled = -1;  // an event counter: a signal handler may do little more than write to it

void noteSignal(int) {
  const int before = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(signalled, &one, sizeof one);
  errno = before;
}

// A signal that was ignored at the start, as under nohup, stays ignored.
void handleSignal(int number) {
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
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) handleSignal(number);
}

App* running = nullptr;

// If the connection to the screen breaks, Qt exits at once, with the event loop still on the stack.
void saveAtExit() {
  if (running) running->commands.savePrefs();
}

void searchFor(const std::string& link) {
  Window1* form = Window1::OpenOrNil();
  if (form && !link.empty()) form->UserGivesLink(link);
}

}  // namespace

int run(App& app, QtPlatform& platform, const std::string& link) {
  platform.leaveLoop = [] { QCoreApplication::exit(0); };
  quitOnSignals(platform);
  // The end of a session may still be cancelled: the preferences are saved, but nothing ends before the
  // session closes the windows.
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, [&app] { app.commands.savePrefs(); });
  running = &app;
  std::atexit(saveAtExit);
  QTimer::singleShot(0, qApp, [&app] { app.Start(); });
  // Delivered during the start, which waits for the probe of the connection.
  QTimer::singleShot(0, qApp, [&link] { searchFor(link); });
  QTimer::singleShot(kAfterTheWindow, qApp, [] { QApplication::setWindowIcon(programIcon()); });
  const int result = QApplication::exec();
  platform.dropViews();
  app.Stop();
  running = nullptr;
  return result;
}
