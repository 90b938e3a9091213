// The dialogs that stand. Each is run by a handler, which waits for its answer while all windows stay alive:
// the program can be quit, a window closed, a command stopped.
#pragma once

#include <QDialog>
#include <QPointer>
#include <cstddef>
#include <memory>
#include <vector>

class QWidget;

class OpenDialogs {
 public:
  // Shows dialog and returns its result once it was answered, or 0 once it was dismissed, or where its
  // handler has ended already. One that comes unasked doesn't take the keys from a user who types.
  int run(QDialog& dialog);
  // Shows a dialog that nobody waits for, and which goes when it is answered.
  void show(std::unique_ptr<QDialog> dialog);
  // Dismisses all; or those whose handler was ended.
  void dismissAll();
  void dismissEnded();
  // The view is about to go: its dialogs belong to another from now on, nullptr for none.
  void handOver(const QWidget& view, QWidget* heir);

 private:
  struct Standing {
    QPointer<QDialog> dialog;
    std::size_t depth;  // of the handler that waits for it, 0 for none
    bool dismissed = false;
  };
  static void dismiss(Standing& each);
  std::vector<Standing> standing_;
};
