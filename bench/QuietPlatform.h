// A host without a user: answers each save dialog with savePath and does nothing else.
#pragma once

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
  // There are no events to deliver.
  void ProcessEvents(int milliseconds, const Awaited& awaited) override {
    IsReadyWithin(milliseconds, awaited);
  }
  void Yield() override {}
  void WindowShown(Window&) override {}
  void WindowClosed(Window&) override {}
  void ControlFocused(Control&) override {}
  void Edit(EditAction) override {}
  void CommandRunning(const std::string&) override {}
  void CommandEnded(const std::string&) override {}
};

// All requests go to host, and the connection test of the form goes to this machine.
inline Endpoints LocalEndpoints(const std::string& host) {
  Endpoints endpoints;
  endpoints.TrackListEndpoint = endpoints.TimedTextEndpoint = host;
  endpoints.ProbeAddress = "127.0.0.1";
  return endpoints;
}
