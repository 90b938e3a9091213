// The preferences: how they are read, saved and applied.

#include <sys/stat.h>

#include <filesystem>

#include "support/SessionDriver.h"

namespace {

const char kName[] = "com.tarnvale.ravelyn.user.prefs";
const std::string kBadOpening = Message("I could read preferences. Error code 1.");

// The chosen type, the four boxes (with "-" for a disabled one), and the strings of the options.
std::string StateOf(SessionDriver& driver) {
  const auto state = driver.State();
  const auto& controls = state["windows"]["Window1"]["controls"];
  std::string text;
  for (const char* type : {"TextBox", "SRTBox", "WebVTTBox"})
    if (controls[type]["value"] == true) text += std::string(type) + " ";
  for (const char* box : {"openBox", "paragraphBox", "timecodeBox", "lineBox"})
    text += std::string(controls[box]["value"] == true ? "1" : "0") +
            (controls[box]["enabled"] == true ? "" : "-");
  text += " |";
  for (const char* value : {"checkedDL", "openDL", "paragraphChecked", "timecodeChecked", "linebyline"})
    text += " " + state["app"][value].get<std::string>();
  return text;
}

}  // namespace

TEST(Preferences, SetTheOptionsByTheirLinesInOrder) {
  const struct {
    std::string file, state;
    bool message = false;
  } rows[] = {
      {"true\ntrue\nfalse\nfalse\nfalse\n", "10-0-0- | true true false false false"},
      {"VTT\nfalse\nfalse\nfalse\nfalse\n", "WebVTTBox 00-0-0- | VTT false false false false"},
      {"Text\nfalse\nfalse\ntrue\ntrue\n", "TextBox 0011 | Text false false true true"},
      {"Text\ntrue\ntrue\nfalse\nfalse\n", "TextBox 110-0 | Text true true false false"},
      {"Text\ntrue\ntrue\ntrue\ntrue\n", "TextBox 110-0 | Text true true false false"},
      {"SRT\ntrue\ntrue\nfalse\nfalse\n", "TextBox 110-0 | Text true true false false"},
      {"SRT\ntrue\nfalse\ntrue\nfalse\n", "SRTBox 10-1-0- | SRT true false true false"},
      {"VTT\ntrue\n", "WebVTTBox 10-0-0- | VTT true   "},
      {"Text\nfalse", "TextBox 0000 | Text false   "},
      {"", "10-0-0- |     "},
      {"Text\n\nfalse\nfalse\nfalse\n", "TextBox 1000 | Text  false false false"},
      {"SRT\nTRUE\nfalse\nfalse\nfalse\n", "SRTBox 10-0-0- | SRT TRUE false false false", true},
      {"srt\nfalse\nTrue\n yes\ntrue \n", "00-0-0- | srt false True  yes true "},
      {"Text\r\nfalse\r\nfalse\r\ntrue\r\ntrue\r\n", "TextBox 0011 | Text false false true true"},
      {"Text\rfalse\rfalse\rtrue\rtrue", "TextBox 0011 | Text false false true true"},
      {"SRT\ntrue\nfalse\nfalse\nfalse\ntrue\nmore", "SRTBox 10-0-0- | SRT true false false false"},
  };
  for (const auto& row : rows) {
    SessionDriver driver;
    WriteFile(driver.prefs / kName, row.file);
    EXPECT_EQ(driver.Run("open"),
              row.message ? (Lines{Shown("Window1"), kBadOpening}) : Lines{Shown("Window1")});
    EXPECT_EQ(StateOf(driver), row.state) << row.file;
  }
}

TEST(Preferences, AreSavedAtQuitAndReadByTheNextSession) {
  SessionDriver driver;
  const std::pair<const char*, const char*> rows[] = {
      {"", "true\ntrue\nfalse\nfalse\nfalse\n"},
      {"click TextBox\nclick lineBox\nclick timecodeBox\nclick openBox", "Text\nfalse\nfalse\ntrue\ntrue\n"},
      {"", "Text\nfalse\nfalse\ntrue\ntrue\n"},
      {"click WebVTTBox\nclick openBox", "VTT\ntrue\nfalse\nfalse\nfalse\n"},
  };
  for (const auto& [actions, file] : rows) {
    EXPECT_EQ(driver.Run("open"), Lines{Shown("Window1")});
    driver.Run(std::string(actions) + "\nquit");
    EXPECT_EQ(ReadFile(driver.prefs / kName), file) << actions;
    driver.End();
  }
  driver.Run("open\nclick SRTBox");
  driver.End();  // without a quit
  EXPECT_EQ(ReadFile(driver.prefs / kName), rows[3].second);
}

TEST(Preferences, ThatCantBeReadDoNotPreventTheStart) {
  const Lines opened = {Shown("Window1")}, bad = {Shown("Window1"), kBadOpening};
  const Lines unread = {Shown("Window1"), Message("I could not read preferences. Error code 2.")};
  using std::filesystem::path;
  const std::pair<void (*)(const path&), Lines> rows[] = {
      {[](const path& file) { std::filesystem::create_directory(file); }, unread},
      {[](const path& file) { ::mkfifo(file.c_str(), 0600); }, unread},
      {[](const path& file) { WriteFile(file, std::string("\0\xFF\n\x80\n", 5)); }, bad},
      {[](const path& file) { WriteFile(file, "SRT\n"), resize_file(file, std::uintmax_t{1} << 30); }, bad},
      {[](const path& file) { remove(file.parent_path()); }, opened},
  };
  for (const auto& [put, shown] : rows) {
    SessionDriver driver;
    put(driver.prefs / kName);
    EXPECT_EQ(driver.Run("open"), shown);
    EXPECT_EQ(driver.Run("click SRTBox\nquit"), Lines{});
  }
}
