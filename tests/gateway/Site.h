// A video site on the loopback for the real yt-dlp; site.py defines what each video does.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "gateway/sources/Descriptor.h"
#include "gateway/sources/SiteSettings.h"
#include "support/processes.h"

namespace site_test {

// Writes a program, and gives its path.
inline std::string WriteScript(const std::string& path, const std::string& script) {
  WriteFile(path, "#!/bin/sh\n" + script + "\n");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  return path;
}

inline std::string CodeOf(const std::string& video) { return video + std::string(11 - video.size(), '-'); }

// Whether a process ends within a minute, or has ended.
inline bool Ends(pid_t process) {
  const gateway::Descriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  pollfd waiting{descriptor.Number(), POLLIN, 0};
  return !descriptor || ::poll(&waiting, 1, 60'000) == 1;
}

class Site {
 public:
  Site() {
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
    return {"/usr/bin/yt-dlp", "", folder_ / "yt-dlp.conf", scratch_.Path()};
  }
  const TemporaryFolder& Folder() const { return folder_; }
  const TemporaryFolder& Scratch() const { return scratch_; }

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
  int MostAtOnce(const std::string& beginning) const {
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
      if (isOurs || folder.starts_with(scratch_.Path())) children.insert(process);
    }
    return children;
  }
  // Those that remain once all that were killed have died.
  std::set<pid_t> ChildrenLeft() const {
    for (const pid_t child : Children()) Ends(child);
    return Children();
  }

 private:
  const TemporaryFolder folder_, scratch_;
  pid_t pid_ = -1;
  int input_ = -1, output_ = -1;
};

}  // namespace site_test
