// ravelyn: the program on a desktop.

#include <dlfcn.h>

#include <QApplication>
#include <QTimer>
#include <chrono>
#include <system_error>
#include <thread>

#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "desktop/pictures.h"
#include "desktop/run.h"

namespace {

// The icon's pictures are read when the first window should stand, not on the way there.
constexpr std::chrono::milliseconds kIconDelay{200};

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

  QtPlatform platform;
  App app(platform);
  QTimer::singleShot(kIconDelay, [] { QApplication::setWindowIcon(programIcon()); });
  return run(app, platform);
}
