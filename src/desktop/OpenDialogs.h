// The dialogs on the screen. A handler that runs one waits for its answer, and meanwhile all windows work:
// the program can be quit, a window closed, a command stopped.
#pragma once

#include <QDialog>
#include <QPointer>
#include <cstddef>
#include <memory>
#include <vector>

class OpenDialogs {
 public:
  // Shows dialog and returns its result after it is answered, 0 after it is dismissed, or 0 at once if its
  // handler has ended already. While no command runs, a dialog leaves the focus in a text field.
  int run(QDialog& dialog);
  // Shows a dialog that no handler waits for; it is destroyed after it is answered.
  void show(std::unique_ptr<QDialog> dialog);
  // Dismisses all; or those whose handler has ended.
  void dismissAll();
  void dismissEnded();
  // Gives the dialogs of a view that is about to be destroyed to another, nullptr for none.
  void handOver(const QWidget& view, QWidget* successor);

 private:
  struct OpenDialog {
    QPointer<QDialog> dialog;
    std::size_t depth;  // of the handler that waits for it, 0 for none
    bool dismissed = false;
  };
  static void dismiss(OpenDialog& each);
  std::vector<OpenDialog> open_;
};
