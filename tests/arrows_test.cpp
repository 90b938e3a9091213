// The arrows of the house: every #include runs downwards, and no header of ours shows another's.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

struct Include {
  std::string file;  // from the root of the project
  std::string target;
};

const fs::path kRoot = RAVELYN_SOURCE_DIR;

bool IsHeader(const std::string& file) { return file.ends_with(".h"); }

// What a line includes; "" if it does not.
std::string TargetOf(const std::string& line) {
  const std::size_t word = line.find_first_not_of("# \t");
  if (!line.starts_with('#') || word == line.npos || line.compare(word, 7, "include") != 0) return "";
  const std::size_t open = line.find_first_of("<\"", word);
  return open == line.npos ? "" : line.substr(open + 1, line.find_first_of(">\"", open + 1) - open - 1);
}

std::vector<Include> IncludesBelow(const std::string& folder) {
  std::vector<Include> includes;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    const std::string file = fs::relative(entry.path(), kRoot).string();
    if (!IsHeader(file) && !file.ends_with(".cpp")) continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      if (const std::string target = TargetOf(line); !target.empty()) includes.push_back({file, target});
    }
  }
  return includes;
}

bool IsForeign(const std::string& target) {
  for (const char* begin : {"pcre2", "asio", "nlohmann/", "unicode/", "Q"}) {
    if (target.starts_with(begin)) return true;
  }
  return false;
}

std::string RoomOf(const std::string& path) { return path.substr(0, path.find('/')); }

// The rooms that each room may include, from the ground up.
const std::map<std::string, Names> kBelow = {
    {"runtime", {}},
    {"http", {"runtime"}},
    {"app", {"runtime", "http"}},
    {"tracks", {"runtime", "http", "app"}},
    {"timedtext", {"runtime", "http", "app"}},
    {"wordsearch", {"runtime", "http", "app", "tracks", "timedtext"}},
    {"prefs", {"runtime", "http", "app", "tracks", "timedtext"}},
    {"ravelyn", {"runtime", "http", "app", "tracks", "timedtext", "wordsearch", "prefs"}},
    {"desktop", {"runtime", "http", "app", "tracks", "timedtext", "wordsearch", "prefs", "ravelyn"}},
};

TEST(Arrows, EveryFolderIsARoomOfTheHouse) {
  for (const auto& entry : fs::directory_iterator(kRoot / "src")) {
    if (!entry.is_directory()) continue;
    EXPECT_TRUE(kBelow.contains(entry.path().filename())) << entry.path();
  }
}

TEST(Arrows, RunDownwardsOnly) {
  std::size_t checked = 0;
  for (const Include& each : IncludesBelow("src")) {
    const std::string from = RoomOf(each.file.substr(4));
    const std::string to = RoomOf(each.target);
    if (!kBelow.contains(to) || to == from || !each.target.ends_with(".h")) continue;
    ++checked;
    ASSERT_TRUE(kBelow.contains(from)) << each.file;
    EXPECT_TRUE(kBelow.at(from).contains(to)) << each.file << " includes " << each.target;
  }
  EXPECT_GT(checked, 50u) << "the includes were not found";
}

TEST(Arrows, NoPathGoesRoundTheRooms) {
  for (const Include& each : IncludesBelow("src")) {
    EXPECT_EQ(each.target.find(".."), std::string::npos) << each.file << " includes " << each.target;
  }
}

// Qt's own headers are shown in the room that draws, and nowhere else.
TEST(Arrows, ForeignHeadersStayInSources) {
  for (const char* folder : {"src", "gateway", "tools"}) {
    for (const Include& each : IncludesBelow(folder)) {
      const bool qt = each.target.starts_with("Q");
      if (qt && each.file.starts_with("src/desktop/")) continue;
      const bool shown = IsHeader(each.file) && IsForeign(each.target);
      EXPECT_FALSE(shown || (qt && folder != std::string("tools")))
          << each.file << " includes " << each.target;
    }
  }
}

TEST(Arrows, EachLibraryHasOneSource) {
  std::map<std::string, Names> sources;
  for (const Include& each : IncludesBelow("src")) {
    for (const char* library : {"pcre2", "asio"}) {
      if (each.target.starts_with(library)) sources[library].insert(each.file);
    }
  }
  EXPECT_EQ(sources["pcre2"], Names({"src/runtime/RegEx.cpp"}));
  EXPECT_EQ(sources["asio"], Names({"src/runtime/TCPSocket.cpp"}));
}

TEST(Arrows, TheGatewayStandsBeside) {
  for (const Include& each : IncludesBelow("gateway")) {
    EXPECT_FALSE(kBelow.contains(RoomOf(each.target))) << each.file << " includes " << each.target;
  }
  for (const Include& each : IncludesBelow("src")) {
    EXPECT_NE(RoomOf(each.target), "gateway") << each.file;
  }
}

}  // namespace
