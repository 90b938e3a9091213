// A host without a screen. It records the calls in order; its answers and failures are data.
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
  // One entry per call, such as "message: Hello" (with a cause on a second line), "save: TEXT
  // search_results.txt" or "show: Window1".
  std::vector<std::string> calls;
  std::deque<std::optional<std::string>>
      saves;  // answers to the next save dialogs; without one, a dialog is cancelled
  std::string prefsFolder;
  std::int64_t ticks = 0;  // set by the test, and moved by ticksEachYield
  std::int64_t ticksEachYield = 0;
  std::int64_t yields = 0;
  std::function<void()> onYield;    // a user action during a yield
  int betweenEvents = 10;           // milliseconds until a wait ends by itself
  std::function<void()> onSilence;  // called when such a wait ends without an event
  std::function<void()> onSaveDialog;
  std::string clipboard;
  std::string running;  // what the running command is shown as
  std::string outcome;  // of the last command

  void MessageBox(const std::string& text, const std::string& cause) override;
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override;
  void ShowURL(const std::string& address) override { calls.push_back("browse: " + address); }
  void Launch(const std::string& path) override { calls.push_back("launch: " + path); }
  std::string PreferencesFolder() override { return prefsFolder; }
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

// A host on which nothing ever happens, with the real clock.
struct SilentPlatform : FakePlatform {
  int waits = 0;
  void ProcessEvents(int milliseconds, const Awaited& awaited) override {
    ++waits;
    IsReadyWithin(milliseconds, awaited);
  }
  std::int64_t Ticks() override { return Platform::Ticks(); }
};
