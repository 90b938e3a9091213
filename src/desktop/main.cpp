// ravelyn: the program on a desktop.

#include <dlfcn.h>

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <system_error>
#include <thread>

#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "desktop/pictures.h"
#include "desktop/run.h"
#include "ravelyn/OwnGateway.h"

namespace {

// What can wait until the first window stands, waits: the icon's pictures, the gateway's process.
constexpr std::chrono::milliseconds kAfterTheWindow{200};

// Reads the system's font settings, which takes as long as to reach the screen. Qt would do it at the
// first text, with all else waiting; what is read once is there for it.
void readFontSettings() {
  void* const fontconfig = ::dlopen("libfontconfig.so.1", RTLD_LAZY);
  if (void* const read = fontconfig ? ::dlsym(fontconfig, "FcInit") : nullptr) {
    reinterpret_cast<int (*)()>(read)();
  }
}

// Where the system gives no thread, Qt reads them by itself.
std::thread startOfReadingFonts() {
  try {
    return std::thread(readFontSettings);
  } catch (const std::system_error&) {
    return {};
  }
}

// Starts the gateway, and again whenever it ends.
void keepRunning(OwnGateway& gateway) {
  gateway.Start();
  if (gateway.Ended() < 0) return;
  auto* const ended = new QSocketNotifier(gateway.Ended(), QSocketNotifier::Read, qApp);
  QObject::connect(ended, &QSocketNotifier::activated, ended, [ended, &gateway] {
    ended->setEnabled(false);
    ended->deleteLater();
    keepRunning(gateway);
  });
}

}  // namespace

int main(int count, char** arguments) {
  std::thread fonts = startOfReadingFonts();
  QApplication qt(count, arguments);
  if (fonts.joinable()) fonts.join();
  QApplication::setApplicationName(QStringLiteral("ravelyn"));
  QApplication::setApplicationVersion(QStringLiteral(RAVELYN_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("com.tarnvale.ravelyn"));
  // The application counts its windows by itself.
  QApplication::setQuitOnLastWindowClosed(false);

  OwnGateway gateway({}, GatewayCommand());
  QTimer::singleShot(kAfterTheWindow, qApp, [&gateway] {
    QApplication::setWindowIcon(programIcon());
    keepRunning(gateway);
  });
  QtPlatform platform;
  App app(platform);
  return run(app, platform);
}
