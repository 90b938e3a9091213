// A program of one test's own.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/App.h"
#include "app/Window1.h"
#include "ravelyn/commands.h"
#include "runtime/Text.h"
#include "support/FakePlatform.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/captions.h"

// Lets a user act while a message is shown.
struct WaitingPlatform : FakePlatform {
  std::function<void()> onMessage;

  void MessageBox(const std::string& text, const std::string& cause) override {
    FakePlatform::MessageBox(text, cause);
    if (onMessage) onMessage();
  }
};

// The whole program on the fake host, opened, with a server and folders of its own.
struct Program {
  LoopbackServer server;
  TemporaryFolder prefs;
  TemporaryFolder folder;  // for what is saved
  WaitingPlatform host;
  App app{host, kCommands, EndpointsAt(server.Host())};

  explicit Program(const std::vector<Track>& tracks = {}) {
    Offer(server, "abc", tracks);
    host.prefsFolder = prefs.Path();
    app.Start();
    host.calls.clear();
  }

  Window1& Form() { return Window1::Get(); }

  // What the host was asked for since the last time.
  std::vector<std::string> Calls() { return std::exchange(host.calls, {}); }

  // Clicks on these controls in order, each "CONTROL" of Window1 or "WINDOW.CONTROL".
  void Click(const std::string& controls) {
    for (const std::string& target : Split(controls, " ")) {
      if (target.empty()) continue;
      const bool named = target.find('.') != std::string::npos;
      Window* window = app.FindWindow(named ? NthField(target, ".", 1) : "Window1");
      if (window) window->FindControl(named ? NthField(target, ".", 2) : target)->PersonClicks();
    }
  }

  // Searches for the video of the constructor and selects these of its tracks.
  void Search(const std::vector<std::int64_t>& rows) {
    Form().TextField1.PersonTypes("https://host/watch?v=abc");
    Click("PushButton2");
    Form().Listbox1.PersonSelects(rows);
  }

  // The next save dialog is answered with this file in folder.
  std::string WillSave(const std::string& name) {
    host.saves.push_back(folder / name);
    return folder / name;
  }
};
