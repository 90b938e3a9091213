// Sessions inside the test's process, one after another, with the same folders and server.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Session.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/captions.h"

using Lines = std::vector<std::string>;

// The objects that a session prints, as text.
using Json = nlohmann::ordered_json;
inline std::string Quote(const std::string& text) { return Json(text).dump(); }
inline std::string Message(const std::string& text, const std::string& cause = "") {
  Json message{{"event", "message"}, {"text", text}};
  if (!cause.empty()) message["cause"] = cause;
  return message.dump();
}
inline std::string Saved(const std::string& filter, const std::string& name, const std::string& path) {
  const Json answer = path.empty() ? Json() : Json(path);
  return Json{{"event", "save"}, {"filter", filter}, {"name", name}, {"path", answer}}.dump();
}
inline std::string Event(const char* name, const char* key, const std::string& value) {
  return Json{{"event", name}, {key, value}}.dump();
}
inline std::string Launched(const std::string& path) { return Event("launch", "path", path); }
inline std::string Browsed(const std::string& address) { return Event("browse", "address", address); }
inline std::string Shown(const std::string& window) { return Event("show", "window", window); }
inline std::string Closed(const std::string& window) { return Event("close", "window", window); }
inline std::string Refused(int line, const std::string& text) {
  return Json{{"event", "error"}, {"line", line}, {"text", text}}.dump();
}
inline const std::string kLinkFocused = Event("focus", "control", "Window1.TextField1");

inline Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

class SessionDriver {
 public:
  LoopbackServer server;
  TemporaryFolder prefs;
  TemporaryFolder folder;  // for saved files
  std::string outcome;     // of the last command that printed one

  // Runs the actions and gives what the session printed, without the "done" lines. Each action must end with
  // its own "done" or with an error, which stays in the list.
  Lines Run(const std::string& actions) {
    if (!session_) session_.emplace(EndpointsAt(server.Host()), prefs.Path(), out_);
    out_.str("");
    std::istringstream in(actions);
    session_->Run(in);
    return WithoutDone(LinesOf(actions), LinesOf(out_.str()));
  }

  nlohmann::json State() { return nlohmann::json::parse(Run("dump").at(0)); }
  // One control as it is printed.
  std::string Control(const std::string& window, const std::string& name) {
    return nlohmann::ordered_json::parse(Run("dump").at(0))["windows"][window]["controls"][name].dump();
  }

  // Ends the program, as the end of its process does; the next Run starts a new one.
  void End() { session_.reset(); }

  // Opens the program, searches for the video "abc" and selects rows; discards what was printed.
  void OpenWith(const std::vector<Track>& tracks, const std::string& rows) {
    Offer(server, "abc", tracks);
    Run("open\ntype TextField1 https://host/watch?v=abc\nclick PushButton2\nselect " + rows);
  }

 private:
  Lines WithoutDone(const Lines& actions, const Lines& printed) {
    Lines reported;
    std::size_t at = 0;
    for (const std::string& action : actions) {
      if (action.find_first_not_of(" \t\r") == std::string::npos || action[0] == '#') continue;
      const std::string done = R"({"event":"done","action":)" + Quote(action) + "}";
      bool ended = false;
      while (!ended && at < printed.size()) {
        ended = printed[at] == done || printed[at].starts_with(R"({"event":"error")");
        const bool isOutcome = printed[at].starts_with(R"({"event":"outcome")");
        if (isOutcome) outcome = nlohmann::json::parse(printed[at])["text"];
        if (printed[at] != done && !isOutcome) reported.push_back(printed[at]);
        ++at;
      }
      EXPECT_TRUE(ended) << action;
    }
    EXPECT_EQ(at, printed.size());
    return reported;
  }

  std::ostringstream out_;
  std::optional<Session> session_;
};
