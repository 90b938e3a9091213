// Every #include points to a room below, and no header of ours includes a library's.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

using Include = std::pair<std::string, std::string>;  // the file's path from the project's root, the target

const fs::path kRoot = RAVELYN_SOURCE_DIR;
const std::regex kInclude("^#[ \\t]*include[ \\t]*[<\"]([^>\"]*)");

std::vector<Include> IncludesBelow(const std::string& folder) {
  std::vector<Include> includes;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    const std::string file = fs::relative(entry.path(), kRoot).string();
    if (!file.ends_with(".h") && !file.ends_with(".cpp")) continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);)
      if (std::smatch found; std::regex_search(line, found, kInclude)) includes.emplace_back(file, found[1]);
  }
  return includes;
}

std::string RoomOf(const std::string& path) { return path.substr(0, path.find('/')); }

// The rooms that each room may include, lowest first. Only main.cpp sees ravelyn/, where all rooms meet.
const std::map<std::string, Names> kBelow = {
    {"runtime", {}},
    {"http", {"runtime"}},
    {"app", {"runtime"}},
    {"tracks", {"runtime", "http", "app"}},
    {"timedtext", {"runtime", "http", "app"}},
    {"wordsearch", {"runtime", "app", "timedtext"}},
    {"prefs", {"runtime", "app"}},
    {"ravelyn", {"runtime", "app", "tracks", "timedtext", "wordsearch", "prefs"}},
    {"desktop", {"runtime", "app"}},
    {"desktop/main.cpp", {"runtime", "app", "ravelyn", "desktop"}},
};

TEST(Arrows, RunDownwardsOnly) {
  for (const auto& entry : fs::directory_iterator(kRoot / "src"))
    EXPECT_TRUE(!entry.is_directory() || kBelow.contains(entry.path().filename())) << entry.path();
  for (const auto& [file, target] : IncludesBelow("src")) {
    const std::string path = file.substr(4), to = RoomOf(target);
    const std::string from = kBelow.contains(path) ? path : RoomOf(path);
    EXPECT_TRUE(to != "gateway" && target.find("..") == target.npos) << file << " includes " << target;
    if (!kBelow.contains(to) || to == from || !target.ends_with(".h")) continue;
    EXPECT_TRUE(kBelow.at(from).contains(to)) << file << " includes " << target;
  }
  for (const auto& [file, target] : IncludesBelow("gateway"))
    EXPECT_FALSE(kBelow.contains(RoomOf(target))) << file << " includes " << target;
}

// Qt may be included only by desktop/ and tools/, other libraries only by the sources named here.
TEST(Arrows, ForeignHeadersStayInTheirSources) {
  std::map<std::string, Names> sources;
  for (const std::string folder : {"src", "gateway", "tools"}) {
    for (const auto& [file, target] : IncludesBelow(folder)) {
      for (const char* library : {"pcre2", "asio", "nlohmann/", "unicode/", "Q"}) {
        const bool draws =
            library == std::string("Q") && (folder == "tools" || file.starts_with("src/desktop/"));
        if (!target.starts_with(library) || draws) continue;
        EXPECT_FALSE(file.ends_with(".h")) << file << " includes " << target;
        if (folder == "src") sources[library].insert(file);
      }
    }
  }
  EXPECT_EQ(sources, (std::map<std::string, Names>{{"pcre2", {"src/runtime/RegEx.cpp"}},
                                                   {"asio", {"src/runtime/TCPSocket.cpp"}}}));
}

}  // namespace
