#include "desktop/OpenDialogs.h"

#include <QEventLoop>
#include <QLineEdit>
#include <algorithm>

#include "runtime/Application.h"

namespace {

// Shows it beside the windows. With takesKeys it gets the focus; else a field keeps it, even before the
// window has got the focus for it.
void showBeside(QDialog& dialog, bool takesKeys) {
  const QWidget* window = dialog.parentWidget();
  const bool isTyping = window && qobject_cast<QLineEdit*>(window->focusWidget());
  dialog.setWindowModality(Qt::NonModal);  // a message box would block all windows
  dialog.setAttribute(Qt::WA_ShowWithoutActivating, isTyping && !takesKeys);
  dialog.show();
}

}  // namespace

// A command's dialogs answer what the user has just done; others come at any time.
int OpenDialogs::run(QDialog& dialog) {
  const Application& app = Application::Current();
  if (app.HasEnded(app.Depth())) return QDialog::Rejected;
  standing_.push_back({&dialog, app.Depth()});
  QEventLoop waiting;
  QObject::connect(&dialog, &QDialog::finished, &waiting, &QEventLoop::quit);
  showBeside(dialog, app.IsCommandRunning());
  waiting.exec();
  const auto mine = std::find_if(standing_.begin(), standing_.end(),
                                 [&](const Standing& each) { return each.dialog == &dialog; });
  const bool dismissed = mine->dismissed;
  standing_.erase(mine);
  return dismissed ? QDialog::Rejected : dialog.result();
}

void OpenDialogs::show(std::unique_ptr<QDialog> dialog) {
  std::erase_if(standing_, [](const Standing& each) { return each.dialog.isNull(); });
  QDialog* const shown = dialog.release();  // goes with its parent at the latest
  standing_.push_back({shown, 0});
  QObject::connect(shown, &QDialog::finished, shown, &QObject::deleteLater);
  showBeside(*shown, false);
}

// A dialog may have asked something itself, such as whether to replace a file.
void OpenDialogs::dismiss(Standing& each) {
  if (!each.dialog) return;
  each.dismissed = true;
  for (QDialog* asked : each.dialog->findChildren<QDialog*>()) asked->reject();
  each.dialog->reject();
}

void OpenDialogs::dismissAll() {
  for (Standing& each : standing_) dismiss(each);
}

void OpenDialogs::dismissEnded() {
  for (Standing& each : standing_) {
    if (Application::Current().HasEnded(each.depth)) dismiss(each);
  }
}

// A dialog belongs to the function that runs it, so it must not go with its parent. A new parent hides it.
void OpenDialogs::handOver(const QWidget& view, QWidget* heir) {
  for (const Standing& each : standing_) {
    if (!each.dialog || each.dialog->parentWidget() != &view) continue;
    const bool stands = each.dialog->isVisible();
    each.dialog->setParent(heir, each.dialog->windowFlags());
    if (stands) each.dialog->show();
  }
}
