// ravelyn: the program on a desktop.

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "desktop/command_line.h"
#include "desktop/run.h"
#include "ravelyn/OwnGateway.h"
#include "ravelyn/commands.h"

namespace {

// Starts the gateway, and restarts it whenever it ends.
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

// This program may use the gateway of another Ravelyn, which may have ended by the time the user comes back.
void takeOver(OwnGateway& gateway) {
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, qApp, [&gateway](auto state) {
    if (state == Qt::ApplicationActive && gateway.Ended() < 0) keepRunning(gateway);
  });
}

// Qt's messages while it starts. If it finds no screen, it would print many lines and abort.
std::string startMessages;

void noteAtStart(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type != QtFatalMsg) {
    startMessages += text.toStdString() + "\n";
    return;
  }
  std::fputs("ravelyn: there is no screen to show the window on; DISPLAY or WAYLAND_DISPLAY must name one\n",
             stderr);
  std::_Exit(1);
}

// Qt removes its own options from the command line.
void startQt(std::optional<QApplication>& qt, int& count, char** arguments) {
  const QtMessageHandler before = qInstallMessageHandler(noteAtStart);
  qt.emplace(count, arguments);
  qInstallMessageHandler(before);
  std::fputs(startMessages.c_str(), stderr);
}

}  // namespace

int main(int count, char** arguments) {
  const auto given = [&] { return readCommandLine({arguments + 1, static_cast<std::size_t>(count) - 1}); };
  if (const CommandLine line = given(); !line.output.empty())
    return std::fputs(line.output.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
  std::optional<QApplication> qt;
  startQt(qt, count, arguments);
  const CommandLine line = given();
  if (!line.error.empty()) {
    std::fprintf(stderr, "ravelyn: %s\n", line.error.c_str());
    return 2;
  }
  QApplication::setApplicationName(QStringLiteral("ravelyn"));
  QApplication::setDesktopFileName(QStringLiteral("com.tarnvale.ravelyn"));
  // The platform itself quits after the last window.
  QApplication::setQuitOnLastWindowClosed(false);

  OwnGateway gateway({}, GatewayCommand());
  QTimer::singleShot(kAfterTheWindow, qApp, [&gateway] {
    keepRunning(gateway);
    takeOver(gateway);
  });
  QtPlatform platform;
  App app(platform, kCommands);
  return run(app, platform, line.link);
}
