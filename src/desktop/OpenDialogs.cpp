#include "desktop/OpenDialogs.h"

#include <QEventLoop>
#include <QLineEdit>
#include <algorithm>

#include "runtime/Application.h"

namespace {

// Shows dialog without blocking the windows. Unless takesKeys, a text field keeps the focus, even if its
// window isn't active yet.
void showBeside(QDialog& dialog, bool takesKeys) {
  const QWidget* window = dialog.parentWidget();
  const bool isTyping = window && qobject_cast<QLineEdit*>(window->focusWidget());
  dialog.setWindowModality(Qt::NonModal);  // a message box would block all windows
  dialog.setAttribute(Qt::WA_ShowWithoutActivating, isTyping && !takesKeys);
  dialog.show();
}

}  // namespace

// A command's dialogs follow what the user has just done and take the focus; others may come at any time.
int OpenDialogs::run(QDialog& dialog) {
  const Application& app = Application::Current();
  if (app.HasEnded(app.Depth())) return QDialog::Rejected;
  open_.push_back({&dialog, app.Depth()});
  QEventLoop waiting;
  QObject::connect(&dialog, &QDialog::finished, &waiting, &QEventLoop::quit);
  showBeside(dialog, app.IsCommandRunning());
  waiting.exec();
  const auto mine =
      std::ranges::find_if(open_, [&](const OpenDialog& each) { return each.dialog == &dialog; });
  const bool dismissed = mine->dismissed;
  open_.erase(mine);
  return dismissed ? QDialog::Rejected : dialog.result();
}

void OpenDialogs::show(std::unique_ptr<QDialog> dialog) {
  std::erase_if(open_, [](const OpenDialog& each) { return each.dialog.isNull(); });
  QDialog* const shown = dialog.release();  // destroyed with its parent at the latest
  open_.push_back({shown, 0});
  QObject::connect(shown, &QDialog::finished, shown, &QObject::deleteLater);
  showBeside(*shown, false);
}

// A dialog may have a question of its own open, such as whether to replace a file.
void OpenDialogs::dismiss(OpenDialog& each) {
  if (!each.dialog) return;
  each.dismissed = true;
  for (QDialog* asked : each.dialog->findChildren<QDialog*>()) asked->reject();
  each.dialog->reject();
}

void OpenDialogs::dismissAll() {
  for (OpenDialog& each : open_) dismiss(each);
}

void OpenDialogs::dismissEnded() {
  for (OpenDialog& each : open_) {
    if (Application::Current().HasEnded(each.depth)) dismiss(each);
  }
}

// A dialog belongs to the function that runs it, so it must not be destroyed with its parent. Qt hides a
// dialog that gets a new parent.
void OpenDialogs::handOver(const QWidget& view, QWidget* successor) {
  for (const OpenDialog& each : open_) {
    if (!each.dialog || each.dialog->parentWidget() != &view) continue;
    const bool isShown = each.dialog->isVisible();
    each.dialog->setParent(successor, each.dialog->windowFlags());
    if (isShown) each.dialog->show();
  }
}
