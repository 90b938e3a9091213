// The host of a session: prints what a user would notice, and answers save dialogs from a queue.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "Printer.h"
#include "runtime/Platform.h"

class SessionPlatform : public Platform {
 public:
  SessionPlatform(Printer& printer, std::string prefsFolder)
      : printer_(printer), prefsFolder_(std::move(prefsFolder)) {}

  // Adds the answer to a later save dialog; nullopt cancels it, as an empty queue does.
  void QueueSave(std::optional<std::string> path) { saves_.push_back(std::move(path)); }

  void MessageBox(const std::string& text, const std::string& cause) override;
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override;
  void ShowURL(const std::string& address) override;
  void Launch(const std::string& path) override;
  std::string PreferencesFolder() override { return prefsFolder_; }
  void ProcessEvents(int milliseconds, const Awaited& awaited) override;
  void Yield() override {}
  void WindowShown(Window& window) override;
  void WindowClosed(Window& window) override;
  void ControlFocused(Control& control) override;
  void Edit(EditAction action) override;
  void CommandRunning(const std::string&) override {}
  void CommandEnded(const std::string& outcome) override;

 private:
  Printer& printer_;
  std::string prefsFolder_;
  std::deque<std::optional<std::string>> saves_;
  std::string clipboard_;
};
