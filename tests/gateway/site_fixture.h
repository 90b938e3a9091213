// The real yt-dlp with a site on the loopback; site.py defines what each video does.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "gateway/sources/SiteSource.h"
#include "gateway/sources/yt_dlp.h"
#include "support/processes.h"

namespace site_test {

using namespace std::chrono_literals;

inline std::string CodeOf(const std::string& video) { return video + std::string(11 - video.size(), '-'); }

class Site {
 public:
  Site() {
    std::filesystem::create_directory(folder_ / "scratch");
    std::array<int, 2> input{}, output{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) return;
    pid_ = Spawn({"python3", RAVELYN_SOURCE_DIR "/tests/gateway/site.py", folder_.Path()},
                 {input[0], output[1]});
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
    Await("ready");
  }
  ~Site() {
    ::close(input_);
    ::close(output_);
    ::waitpid(pid_, nullptr, 0);
  }
  Site(const Site&) = delete;
  Site& operator=(const Site&) = delete;

  gateway::SiteSettings Settings() const {
    return {"/usr/bin/yt-dlp", "", folder_ / "yt-dlp.conf", Scratch()};
  }
  const TemporaryFolder& Folder() const { return folder_; }
  std::string Scratch() const { return folder_ / "scratch"; }

  // Reads the site's output until a line with this beginning. Each line is read once.
  void Await(const std::string& beginning) {
    std::string line;
    for (char c = 0; ::read(output_, &c, 1) == 1;) {
      if (c == '\n' && line.starts_with(beginning)) return;
      line = c == '\n' ? "" : line + c;
    }
    ADD_FAILURE() << "the site ended before " << beginning;
  }

  // The requests so far with this beginning: "list CODE", "text CODE LANG".
  std::vector<std::string> Requests(const std::string& beginning) const {
    std::ifstream log(folder_ / "requests");
    std::vector<std::string> found;
    for (std::string line; std::getline(log, line);) {
      if (line.starts_with(beginning)) found.push_back(line);
    }
    return found;
  }
  // The largest number of these requests that were answered at a time.
  int Crowd(const std::string& beginning) const {
    int most = 0;
    for (const auto& line : Requests(beginning))
      most = std::max(most, std::stoi(line.substr(line.rfind(' '))));
    return most;
  }

  // The children of this process, except the site, and all processes that run in a scratch folder. Zombies
  // count.
  std::set<pid_t> Children() const {
    std::set<pid_t> children;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      const pid_t process = std::atoi(entry.path().filename().c_str());
      const std::string stat = process > 0 ? ReadFile(entry.path() / "stat") : "";
      const std::size_t afterName = stat.rfind(')');
      if (afterName == std::string::npos || process == pid_) continue;
      std::error_code ignored;
      const std::string folder = std::filesystem::read_symlink(entry.path() / "cwd", ignored).string();
      const bool isOurs = std::atoi(stat.c_str() + std::min(stat.size(), afterName + 4)) == ::getpid();
      if (isOurs || folder.starts_with(Scratch())) children.insert(process);
    }
    return children;
  }
  std::size_t Folders() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(Scratch()), {}));
  }

 private:
  TemporaryFolder folder_;
  pid_t pid_ = -1;
  int input_ = -1, output_ = -1;
};

inline std::size_t OpenDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// No wait between lists, and enough time on a busy machine.
inline gateway::SiteLimits Quick() {
  gateway::SiteLimits limits;
  limits.betweenLists = 0ms;
  limits.text = limits.list = limits.warm = 200s;
  return limits;
}

// Whether a process ends within a minute, or has ended.
inline bool Ends(pid_t process) {
  const gateway::Descriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  pollfd waiting{descriptor.Number(), POLLIN, 0};
  return !descriptor || ::poll(&waiting, 1, 60'000) == 1;
}

// Calls ask with each number below count, all at the same time.
template <typename Ask>
void AllAtOnce(std::size_t count, Ask ask) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < count; ++i) threads.emplace_back(ask, i);
  for (auto& thread : threads) thread.join();
}

// "en=English, fr-orig=French (automatic)"
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
