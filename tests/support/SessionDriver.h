// Sessions within the test's own process, one after the other on the same folders and server.
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

// The objects that a session prints, letter by letter.
inline std::string Quote(const std::string& text) { return nlohmann::json(text).dump(); }
inline std::string Message(const std::string& text, const std::string& cause = "") {
  return R"({"event":"message","text":)" + Quote(text) + (cause.empty() ? "" : ",\"cause\":" + Quote(cause)) +
         "}";
}
inline std::string Saved(const std::string& filter, const std::string& name, const std::string& path) {
  return R"({"event":"save","filter":)" + Quote(filter) + R"(,"name":)" + Quote(name) + R"(,"path":)" +
         (path.empty() ? "null" : Quote(path)) + "}";
}
inline std::string Launched(const std::string& path) {
  return R"({"event":"launch","path":)" + Quote(path) + "}";
}
inline std::string Browsed(const std::string& address) {
  return R"({"event":"browse","address":)" + Quote(address) + "}";
}
inline std::string Shown(const std::string& window) {
  return R"({"event":"show","window":)" + Quote(window) + "}";
}
inline std::string Closed(const std::string& window) {
  return R"({"event":"close","window":)" + Quote(window) + "}";
}
inline std::string Refused(int line, const std::string& text) {
  return R"({"event":"error","line":)" + std::to_string(line) + R"(,"text":)" + Quote(text) + "}";
}
inline const std::string kLinkFocused = R"({"event":"focus","control":"Window1.TextField1"})";

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
  TemporaryFolder folder;  // for what is saved
  std::string outcome;     // of the last command that had one

  // What the session printed, but for the "done" lines: each action must have ended with its own,
  // or with an error, which stays in the list.
  Lines Run(const std::string& actions) {
    if (!session_) session_.emplace(EndpointsAt(server.Host()), prefs.Path(), out_);
    out_.str("");
    std::istringstream in(actions);
    session_->Run(in);
    return WithoutDone(LinesOf(actions), LinesOf(out_.str()));
  }

  nlohmann::json State() { return nlohmann::json::parse(Run("dump").at(0)); }
  // One control as it was printed, values of the first level only.
  std::string Control(const std::string& window, const std::string& name) {
    return nlohmann::ordered_json::parse(Run("dump").at(0))["windows"][window]["controls"][name].dump();
  }

  // The program ends as it does with its process; the next Run starts anew.
  void End() { session_.reset(); }

  // Opens, searches for the video "abc" and selects rows, and forgets what was printed.
  void OpenWith(const std::vector<Track>& tracks, const std::string& rows) {
    Offer(server, "abc", tracks);
    Run("open\ntype TextField1 https://host/watch?v=abc\nclick PushButton2\nselect " + rows);
  }

 private:
  Lines WithoutDone(const Lines& actions, const Lines& printed) {
    Lines noticed;
    std::size_t at = 0;
    for (const std::string& action : actions) {
      if (action.find_first_not_of(" \t\r") == std::string::npos || action[0] == '#') continue;
      const std::string done = R"({"event":"done","action":)" + Quote(action) + "}";
      bool ended = false;
      while (!ended && at < printed.size()) {
        ended = printed[at] == done || printed[at].starts_with(R"({"event":"error")");
        const bool isOutcome = printed[at].starts_with(R"({"event":"outcome")");
        if (isOutcome) outcome = nlohmann::json::parse(printed[at])["text"];
        if (printed[at] != done && !isOutcome) noticed.push_back(printed[at]);
        ++at;
      }
      EXPECT_TRUE(ended) << action;
    }
    EXPECT_EQ(at, printed.size());
    return noticed;
  }

  std::ostringstream out_;
  std::optional<Session> session_;
};
