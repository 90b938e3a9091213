// ravelyn: the program on a desktop.

#include <QApplication>
#include <QTimer>

#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "desktop/pictures.h"

int main(int count, char** arguments) {
  QApplication qt(count, arguments);
  QApplication::setApplicationName(QStringLiteral("ravelyn"));
  QApplication::setApplicationVersion(QStringLiteral(RAVELYN_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("com.tarnvale.ravelyn"));
  QApplication::setWindowIcon(programIcon());
  // The application counts its windows by itself.
  QApplication::setQuitOnLastWindowClosed(false);

  QtPlatform platform;
  App app(platform);
  QTimer::singleShot(0, [&app] { app.Start(); });
  const int result = QApplication::exec();
  platform.dropViews();
  app.Stop();
  return result;
}
