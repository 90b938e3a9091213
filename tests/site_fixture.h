// The real yt-dlp before a site on the loopback: support/site/site.py says which video does what.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "gateway/sources/SiteSource.h"
#include "gateway/sources/yt_dlp.h"
#include "support/TemporaryFolder.h"

extern char** environ;

namespace site_test {

using namespace std::chrono_literals;

inline std::string CodeOf(const std::string& video) { return video + std::string(11 - video.size(), '-'); }

class Site {
 public:
  Site() {
    std::filesystem::create_directory(folder_ / "scratch");
    std::array<int, 2> input{}, output{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    std::string script = RAVELYN_SOURCE_DIR "/tests/support/site/site.py", folder = folder_.Path();
    std::array<char*, 4> arguments{python_.data(), script.data(), folder.data(), nullptr};
    EXPECT_EQ(::posix_spawnp(&pid_, "python3", &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    char ready = 0;
    EXPECT_EQ(::read(output[0], &ready, 1), 1) << "the site did not start";
    ::close(output[0]);
  }
  ~Site() {
    ::close(input_);
    ::waitpid(pid_, nullptr, 0);
  }
  Site(const Site&) = delete;
  Site& operator=(const Site&) = delete;

  gateway::SiteSettings Settings() const {
    const gateway::YtDlp found = gateway::FindYtDlp("");
    return {found.program, found.version, folder_ / "yt-dlp.conf", Scratch()};
  }
  std::string Scratch() const { return folder_ / "scratch"; }
  const TemporaryFolder& Folder() const { return folder_; }
  pid_t Process() const { return pid_; }

  // The requests so far that begin so: "list CODE", "text CODE LANG".
  std::vector<std::string> Requests(const std::string& beginning) const {
    std::ifstream log(folder_ / "requests");
    std::vector<std::string> found;
    for (std::string line; std::getline(log, line);) {
      if (line.starts_with(beginning)) found.push_back(line);
    }
    return found;
  }

 private:
  TemporaryFolder folder_;
  std::string python_ = "python3";
  pid_t pid_ = -1;
  int input_ = -1;
};

// No wait between lists, so that a test need not wait for it.
inline gateway::SiteLimits Quick() {
  gateway::SiteLimits limits;
  limits.betweenLists = 0ms;
  return limits;
}

// "en=English fr-orig=French (automatic)"
inline std::string Shown(const gateway::TrackList& list) {
  std::string shown;
  for (const auto& track : list.tracks)
    shown += (shown.empty() ? "" : ", ") + track.language + "=" + track.name;
  return shown;
}

inline std::string TextOf(const gateway::CaptionText& text) {
  if (!text.document) return "no text: " + text.cause;
  return std::get<std::string>(*text.document);
}

}  // namespace site_test
