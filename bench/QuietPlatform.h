// A host for one program run that nobody watches: answers the save dialog with one path and does
// nothing else.
#pragma once

#include <chrono>
#include <thread>

#include "app/Endpoints.h"
#include "runtime/Platform.h"

class QuietPlatform : public Platform {
 public:
  std::optional<std::string> savePath;
  int messages = 0;

  void MessageBox(const std::string&, const std::string&) override { ++messages; }
  std::optional<std::string> AskSavePath(const std::string&, const std::string&) override { return savePath; }
  void ShowURL(const std::string&) override {}
  void Launch(const std::string&) override {}
  std::string PreferencesFolder() override { return ""; }
  void ProcessEvents(int milliseconds) override {
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }
  void Yield() override {}
  // No event can come during a wait.
  int LongestWait() const override { return 500; }
  void WindowShown(Window&) override {}
  void WindowClosed(Window&) override {}
  void ControlFocused(Control&) override {}
  void Edit(EditAction) override {}
  void CommandRunning(const std::string&) override {}
};

// Requests go to host alone, and so does the connection test of the form that opens.
inline Endpoints LocalEndpoints(const std::string& host) {
  Endpoints endpoints;
  endpoints.TrackListEndpoint = endpoints.TimedTextEndpoint = host;
  endpoints.ProbeAddress = "127.0.0.1";
  return endpoints;
}
