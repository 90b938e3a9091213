#include "desktop/QtPlatform.h"

#include <time.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include "desktop/WindowView.h"
#include "desktop/dialogs.h"
#include "desktop/edit_actions.h"
#include "desktop/menu_actions.h"
#include "desktop/opener.h"
#include "desktop/preferences_folder.h"
#include "desktop/shown_text.h"
#include "desktop/spoken_views.h"
#include "runtime/Application.h"

namespace {

constexpr std::chrono::milliseconds kFrame{16};
constexpr int kLongestDelivery = 10;  // milliseconds

// Takes a few nanoseconds, but advances in steps of up to 4 ms.
std::chrono::milliseconds cheapNow() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return std::chrono::milliseconds(std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000);
}

bool isQuitting() {
  const Application* app = Application::CurrentOrNil();
  return app && app->IsQuitting();
}

// A handler that runs during a wait may start a wait of its own; a descriptor that stays ready must not wake
// that one again and again.
void wakeOnce(QSocketNotifier& notifier) {
  QObject::connect(&notifier, &QSocketNotifier::activated, &notifier,
                   [&notifier] { notifier.setEnabled(false); });
}

QString documentsFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

bool isWebAddress(const QUrl& url) {
  const bool web = url.scheme() == u"http" || url.scheme() == u"https";
  return url.isValid() && web && !url.host().isEmpty();
}

}  // namespace

QtPlatform::QtPlatform() {
  installSpokenViews();
  QObject::connect(qApp, &QApplication::focusChanged, &guard_,
                   [this](QWidget*, QWidget* now) { noteFocus(now); });
}

QtPlatform::~QtPlatform() { dropViews(); }

WindowView* QtPlatform::viewOf(const Window& window) const {
  const auto at = views_.find(&window);
  return at == views_.end() ? nullptr : at->second;
}

void QtPlatform::dropViews() {
  for (const auto& [window, view] : views_) delete view;
  views_.clear();
}

void QtPlatform::WindowShown(Window& window) {
  WindowView*& view = views_[&window];
  const bool isNew = !view;
  if (isNew) view = new WindowView(window, [this](const std::string& item) { choose(item); });
  view->bringForward();
  if (isNew && !running_.isEmpty()) view->showRunning(running_);
}

// The view may be handling the very click that closes it, so it is deleted later.
void QtPlatform::WindowClosed(Window& window) {
  if (const auto at = views_.find(&window); at != views_.end()) {
    WindowView* view = at->second;
    views_.erase(at);
    view->forget();
    dialogs_.dismissEnded();
    dialogs_.handOver(*view, viewInFront());
    view->hide();
    view->deleteLater();
  }
  if (!window.Owner().ActiveWindow()) window.Owner().Quit();
  quitIfAsked();
}

void QtPlatform::ControlFocused(Control& control) {
  if (WindowView* view = viewOf(control.Owner())) view->focus(control);
}

void QtPlatform::noteFocus(QWidget* now) {
  const auto* view = now ? dynamic_cast<WindowView*>(now->window()) : nullptr;
  Control* control = view ? view->controlOf(now) : nullptr;
  if (!control) return;
  focus_ = now;
  control->Owner().Owner().RecordFocus(control);
}

void QtPlatform::Edit(EditAction action) { edit(focus_, action); }

bool QtPlatform::CanEdit(EditAction action) { return canEdit(focus_, action); }

void QtPlatform::choose(const std::string& item) {
  Application::Current().ChooseMenuItem(item);
  quitIfAsked();
}

void QtPlatform::quit() {
  Application::Current().Quit();
  quitIfAsked();
}

void QtPlatform::quitIfAsked() {
  if (!isQuitting()) return;
  dialogs_.dismissAll();
  if (leaveLoop) leaveLoop();
}

void QtPlatform::CommandRunning(const std::string& what) {
  running_ = shownText(what);
  for (const auto& [window, view] : views_) view->showRunning(running_);
  if (WindowView* view = viewInFront()) view->announceRunning(running_ + QChar(u'\u2026'));
}

void QtPlatform::CommandEnded(const std::string& outcome) {
  running_.clear();
  dialogs_.dismissEnded();
  for (const auto& [window, view] : views_) view->showEnded(shownText(outcome));
  if (WindowView* view = viewInFront()) view->announceEnded(shownText(outcome));
}

// All windows show a command's state; only this one announces it. It is also the parent of new dialogs.
WindowView* QtPlatform::viewInFront() const {
  const Window* active = Application::Current().ActiveWindow();
  return active ? viewOf(*active) : nullptr;
}

void QtPlatform::ProcessEvents(int milliseconds, const Awaited& awaited) {
  if (milliseconds <= 0) return QCoreApplication::processEvents(QEventLoop::AllEvents, kLongestDelivery);
  std::optional<QSocketNotifier> reading, writing;
  if (awaited.reading) wakeOnce(reading.emplace(awaited.descriptor, QSocketNotifier::Read));
  if (awaited.writing) wakeOnce(writing.emplace(awaited.descriptor, QSocketNotifier::Write));
  QTimer wake;
  wake.setSingleShot(true);
  wake.setTimerType(Qt::PreciseTimer);
  if (milliseconds != kForever) wake.start(milliseconds);
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtPlatform::Yield() {
  if (cheapNow() - lastYield_ < kFrame) return;
  ProcessEvents(-1, {});
  lastYield_ = cheapNow();
}

int QtPlatform::run(QDialog& dialog) {
  if (isQuitting()) return QDialog::Rejected;
  addQuitShortcut(dialog, *Application::Current().CurrentMenuBar(),
                  [this](const std::string& item) { choose(item); });
  return dialogs_.run(dialog);
}

void QtPlatform::MessageBox(const std::string& text, const std::string& cause) {
  run(*makeMessage(text, cause, viewInFront()));
}

std::optional<std::string> QtPlatform::AskSavePath(const std::string& filter, const std::string& name) {
  if (saveFolder_.isEmpty()) saveFolder_ = documentsFolder();
  const auto dialog =
      makeSaveDialog(filter, name, saveFolder_, Application::Current().CommandStep(), viewInFront());
  QString path;
  do {
    if (run(*dialog) != QDialog::Accepted || dialog->selectedFiles().isEmpty()) return std::nullopt;
    path = withExtension(dialog->selectedFiles().constFirst(), name);
  } while (QFileInfo::exists(path) && run(*makeReplaceQuestion(path, viewInFront())) != QMessageBox::Yes);
  saveFolder_ = QFileInfo(path).absolutePath();
  return QFile::encodeName(path).toStdString();
}

void QtPlatform::openOrReport(const QUrl& url, const QString& message, const std::string& what) {
  const auto make = [this, message, what] { return makeCannotOpen(message, what, viewInFront()); };
  const auto reportLater = [this, make] { dialogs_.show(make()); };
  if (url.isEmpty() || !openBySystem(url, reportLater)) run(*make());
}

void QtPlatform::ShowURL(const std::string& address) {
  const QUrl url(QString::fromStdString(address), QUrl::TolerantMode);
  openOrReport(isWebAddress(url) ? url : QUrl(), QObject::tr("No program could open this address:"), address);
}

void QtPlatform::Launch(const std::string& path) {
  openOrReport(QUrl::fromLocalFile(QFile::decodeName(path.c_str())),
               QObject::tr("No program could open this file:"), path);
}

std::string QtPlatform::PreferencesFolder() { return preferencesFolder(); }
