// ravelyn: the program on a desktop.

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>

#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "desktop/pictures.h"
#include "desktop/run.h"
#include "ravelyn/OwnGateway.h"

namespace {

// What can wait until the first window stands, waits: the icon's pictures, the gateway's process.
constexpr std::chrono::milliseconds kAfterTheWindow{200};

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

// Another Ravelyn, whose gateway served this one, may have ended: when the user comes back is the time to
// see.
void takeOver(OwnGateway& gateway) {
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, qApp, [&gateway](auto state) {
    if (state == Qt::ApplicationActive && gateway.Ended() < 0) keepRunning(gateway);
  });
}

}  // namespace

int main(int count, char** arguments) {
  QApplication qt(count, arguments);
  QApplication::setApplicationName(QStringLiteral("ravelyn"));
  QApplication::setApplicationVersion(QStringLiteral(RAVELYN_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("com.tarnvale.ravelyn"));
  // The application counts its windows by itself.
  QApplication::setQuitOnLastWindowClosed(false);

  OwnGateway gateway({}, GatewayCommand());
  QTimer::singleShot(kAfterTheWindow, qApp, [&gateway] {
    QApplication::setWindowIcon(programIcon());
    keepRunning(gateway);
    takeOver(gateway);
  });
  QtPlatform platform;
  App app(platform);
  return run(app, platform);
}
