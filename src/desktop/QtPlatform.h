// The desktop as a host: draws the windows, shows real dialogs, lets Qt's events run.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <chrono>
#include <functional>
#include <map>

#include "desktop/OpenDialogs.h"
#include "runtime/Platform.h"

class QDialog;
class QUrl;
class QWidget;
class WindowView;

class QtPlatform : public Platform {
 public:
  // A QApplication must stand, and the application that is served must be gone, or its views
  // dropped, before this is.
  QtPlatform();
  ~QtPlatform() override;

  // nullptr for a window that was not shown yet.
  WindowView* viewOf(const Window& window) const;
  // Ends the program as the user's Quit does.
  void quit();
  // Takes all windows from the screen; the records stay as they are.
  void dropViews();

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

 protected:
  // Hands url to the system; false if nothing there takes it. failed is called where that shows later.
  virtual bool open(const QUrl& url, const std::function<void()>& failed);
  // Ends the loop of events that the program runs in.
  virtual void leaveLoop();

 private:
  void choose(const std::string& item);
  void noteFocus(QWidget* now);
  void quitIfAsked();
  WindowView* viewInFront() const;
  // Runs dialog to its end and gives its result; 0 at once while the program quits.
  int run(QDialog& dialog);
  QWidget* parentForDialog() const;
  // Opens url, or says in these words that nothing could open what.
  void openOrSay(const QUrl& url, const QString& words, const std::string& what);

  QObject guard_;  // of the connections
  std::map<const Window*, WindowView*> views_;
  OpenDialogs dialogs_;
  QPointer<QWidget> focus_;  // of the last control that had it, also while a menu is open
  QString running_;
  QString saveFolder_;  // the last one used; "" before the first
  std::chrono::milliseconds lastLook_{0};
};
