// The whole program on a fake host.
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

// Lets the user act while a message is shown.
struct WaitingPlatform : FakePlatform {
  std::function<void()> onMessage;

  void MessageBox(const std::string& text, const std::string& cause) override {
    FakePlatform::MessageBox(text, cause);
    if (onMessage) onMessage();
  }
};

// The opened program with its own server and folders.
struct Program {
  LoopbackServer server;
  TemporaryFolder prefs;
  TemporaryFolder folder;  // for saved files
  WaitingPlatform host;
  App app{host, kCommands, EndpointsAt(server.Host())};

  explicit Program(const std::vector<Track>& tracks = {}) {
    Offer(server, "abc", tracks);
    host.prefsFolder = prefs.Path();
    app.Start();
    host.calls.clear();
  }

  Window1& Form() { return Window1::Get(); }

  // The host calls since the last call of this.
  std::vector<std::string> Calls() { return std::exchange(host.calls, {}); }

  // Clicks these controls in order, each given as "CONTROL" of Window1 or as "WINDOW.CONTROL".
  void Click(const std::string& controls) {
    for (const std::string& target : Split(controls, " ")) {
      if (target.empty()) continue;
      const bool named = target.find('.') != std::string::npos;
      Window* window = app.FindWindow(named ? NthField(target, ".", 1) : "Window1");
      if (window) window->FindControl(named ? NthField(target, ".", 2) : target)->UserClicks();
    }
  }

  // Searches for the constructor's video and selects these tracks.
  void Search(const std::vector<std::int64_t>& rows) {
    Form().TextField1.UserTypes("https://host/watch?v=abc");
    Click("PushButton2");
    Form().Listbox1.UserSelects(rows);
  }

  // The next save dialog chooses this file in folder. Gives its path.
  std::string WillSave(const std::string& name) {
    host.saves.push_back(folder / name);
    return folder / name;
  }
};
