#include "desktop/OpenDialogs.h"

#include <QDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <algorithm>

#include "runtime/Application.h"

namespace {

// A command's dialogs answer what the user has just done; others come at any time, even before the window has
// got the focus for its field.
bool wouldTakeKeys(const QDialog& dialog) {
  const Application* app = Application::CurrentOrNil();
  const QWidget* window = dialog.parentWidget();
  return app && !app->IsCommandRunning() && window && qobject_cast<QLineEdit*>(window->focusWidget());
}

}  // namespace

int OpenDialogs::run(QDialog& dialog) {
  const Application* app = Application::CurrentOrNil();
  standing_.push_back({&dialog, app ? app->Depth() : 0});
  QEventLoop waiting;
  QObject::connect(&dialog, &QDialog::finished, &waiting, &QEventLoop::quit);
  dialog.setWindowModality(Qt::NonModal);  // a message box would block all windows
  dialog.setAttribute(Qt::WA_ShowWithoutActivating, wouldTakeKeys(dialog));
  dialog.show();
  waiting.exec();
  std::erase_if(standing_, [&](const Standing& each) { return each.dialog == &dialog; });
  return dialog.result();
}

void OpenDialogs::dismissAll() {
  for (const Standing& each : standing_) each.dialog->reject();
}

void OpenDialogs::dismissEnded() {
  for (const Standing& each : standing_) {
    if (Application::Current().HasEnded(each.depth)) each.dialog->reject();
  }
}

// A dialog belongs to the function that runs it, so it must not go with its parent. A new parent hides it.
void OpenDialogs::handOver(const QWidget& view, QWidget* heir) {
  for (const Standing& each : standing_) {
    if (each.dialog->parentWidget() != &view) continue;
    const bool stands = each.dialog->isVisible();
    each.dialog->setParent(heir, each.dialog->windowFlags());
    if (stands) each.dialog->show();
  }
}
