// ravelyn-tour: shows the program doing its main job in its own windows.

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <QTimer>
#include <iostream>

#include "Tour.h"
#include "ravelyn/commands.h"

namespace {

QPalette DarkPalette() {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
  dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  dark.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
  dark.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
  dark.setColor(QPalette::Highlight, QColor(0x4a, 0x5a, 0xc8));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    dark.setColor(role, QColor(0xf0, 0xf0, 0xf0));
    dark.setColor(QPalette::Disabled, role, QColor(0x8c, 0x8c, 0x90));
  }
  return dark;
}

}  // namespace

int main(int count, char** arguments) {
  QApplication qt(count, arguments);
  const QStringList given = QApplication::arguments();
  if (given.size() < 3) {
    std::cerr << "Usage: ravelyn-tour HOST:PORT FOLDER [--dark]\n"
                 "Does the program's main job on its own windows against the gateway at HOST:PORT,\n"
                 "and leaves files and pictures in FOLDER.\n";
    return 2;
  }
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  if (given.contains(QStringLiteral("--dark"))) QApplication::setPalette(DarkPalette());
  QApplication::setQuitOnLastWindowClosed(false);

  Endpoints endpoints;
  endpoints.TrackListEndpoint = endpoints.TimedTextEndpoint = given[1].toStdString();
  endpoints.ProbeAddress = "127.0.0.1";
  TourPlatform platform(given[2].toStdString());
  App app(platform, kCommands, endpoints);
  bool succeeded = false;
  QTimer::singleShot(0, [&] {
    app.Start();
    succeeded = Tour(app, platform, given[2].toStdString()).Run();
    app.Quit();
    QApplication::quit();
  });
  QApplication::exec();
  platform.dropViews();
  app.Stop();
  return succeeded ? 0 : 1;
}
