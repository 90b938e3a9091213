// The desktop as a host: draws the windows, shows real dialogs, delivers Qt's events.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <chrono>
#include <functional>
#include <map>

#include "desktop/OpenDialogs.h"
#include "runtime/Platform.h"

class QUrl;
class WindowView;

class QtPlatform : public Platform {
 public:
  // Requires: a QApplication; the application ends, or dropViews() is called, before this is destroyed.
  QtPlatform();
  ~QtPlatform() override;

  // nullptr for a window that has not been shown.
  WindowView* viewOf(const Window& window) const;
  // Ends the program as the user's Quit does.
  void quit();
  // Takes all windows from the screen; the records stay as they are.
  void dropViews();
  // Called, perhaps several times, when the program is to leave its event loop.
  std::function<void()> leaveLoop;

  void MessageBox(const std::string& text, const std::string& cause) override;
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override;
  void ShowURL(const std::string& address) override;
  void Launch(const std::string& path) override;
  std::string PreferencesFolder() override;
  void ProcessEvents(int milliseconds, const Awaited& awaited) override;
  void Yield() override;
  void WindowShown(Window& window) override;
  void WindowClosed(Window& window) override;
  void ControlFocused(Control& control) override;
  void Edit(EditAction action) override;
  bool CanEdit(EditAction action) override;
  void CommandRunning(const std::string& what) override;
  void CommandEnded(const std::string& outcome) override;

 private:
  void choose(const std::string& item);
  void noteFocus(QWidget* now);
  void quitIfAsked();
  WindowView* viewInFront() const;
  // Shows dialog until it is answered and returns its result; 0 at once if the program is quitting.
  int run(QDialog& dialog);
  // Opens url, or shows in message that `what` could not be opened.
  void openOrReport(const QUrl& url, const QString& message, const std::string& what);

  QObject guard_;  // ends the connections
  std::map<const Window*, WindowView*> views_;
  OpenDialogs dialogs_;
  QPointer<QWidget> focus_;  // of the control that last had the focus, which an open menu takes
  QString running_;
  QString saveFolder_;  // the last one used; "" before the first
  std::chrono::milliseconds lastYield_{0};
};
