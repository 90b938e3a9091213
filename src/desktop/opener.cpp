#include "desktop/opener.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <set>

namespace {

// Destroying a QProcess kills its process, so openers that still run at the end of the program, and this set
// of them, are never destroyed.
std::set<QProcess*>& running() {
  static auto* const all = new std::set<QProcess*>;
  return *all;
}

void reportEnd(QProcess* opener, const std::function<void()>& failed) {
  const bool opened = opener->exitStatus() == QProcess::NormalExit && opener->exitCode() == 0;
  running().erase(opener);
  opener->deleteLater();
  if (!opened) failed();
}

}  // namespace

bool openBySystem(const QUrl& url, const std::function<void()>& failed) {
  const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  if (program.isEmpty()) return QDesktopServices::openUrl(url);
  auto* const opener = new QProcess;
  running().insert(opener);
  opener->setProcessChannelMode(QProcess::ForwardedChannels);
  opener->setStandardInputFile(QProcess::nullDevice());
  QObject::connect(opener, &QProcess::finished, opener, [opener, failed] { reportEnd(opener, failed); });
  opener->start(program, {QString::fromUtf8(url.toEncoded())});
  return true;
}
