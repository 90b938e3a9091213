// A host without a screen that keeps what it was asked for, in order, and whose answers and failures
// are data.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "runtime/Application.h"
#include "runtime/Control.h"
#include "runtime/Platform.h"
#include "runtime/Window.h"

class FakePlatform : public Platform {
 public:
  // One line a call, such as "message: Hello" (a cause follows on a line of its own), "save: TEXT
  // search_results.txt", "show: Window1".
  std::vector<std::string> calls;
  std::deque<std::optional<std::string>> saves;  // answers to the next save dialogs; then all are cancelled
  std::string prefsFolder;
  std::int64_t ticks = 0;  // moved by hand, and by ticksEachYield
  std::int64_t ticksEachYield = 0;
  std::int64_t yields = 0;
  std::function<void()> onYield;    // what the user does meanwhile
  int betweenEvents = 10;           // milliseconds
  std::function<void()> onSilence;  // nothing came in a part of a wait
  std::function<void()> onSaveDialog;
  std::string clipboard;
  std::string running;  // the command that is shown as running
  std::string outcome;  // of the last one that ended

  void MessageBox(const std::string& text, const std::string& cause) override;
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override;
  void ShowURL(const std::string& address) override { calls.push_back("browse: " + address); }
  void Launch(const std::string& path) override { calls.push_back("launch: " + path); }
  std::string PreferencesFolder() override { return prefsFolder; }
  // As a host on which something happens again and again.
  void ProcessEvents(int milliseconds, const Awaited& awaited) override;
  void Yield() override;
  void WindowShown(Window& window) override { calls.push_back("show: " + window.Name()); }
  void WindowClosed(Window& window) override { calls.push_back("close: " + window.Name()); }
  void ControlFocused(Control& control) override { calls.push_back("focus: " + control.Name()); }
  void Edit(EditAction action) override;
  void CommandRunning(const std::string& what) override { running = what; }
  void CommandEnded(const std::string& how) override { running = "", outcome = how; }
  std::int64_t Ticks() override { return ticks; }
};

// A host on which nothing ever happens, on the real clock.
struct SilentPlatform : FakePlatform {
  int waits = 0;
  void ProcessEvents(int milliseconds, const Awaited& awaited) override {
    ++waits;
    IsReadyWithin(milliseconds, awaited);
  }
  std::int64_t Ticks() override { return Platform::Ticks(); }
};
