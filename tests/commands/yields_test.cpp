// Events are delivered from inside every long loop: each pass over rows, cues or hits yields once.

#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

constexpr std::int64_t kMany = 5000;
constexpr std::int64_t kOthers = 1000;  // most yields of a request on this machine, and of short loops

struct Yields : testing::Test {
  Program program{{{"en", "English", Document(std::vector<Cue>(kMany, {"1.5", "2", "word"}))}}};

  // The number of loops over all that yielded.
  std::int64_t LoopsOf(const std::string& button) {
    program.WillSave("out");
    const std::int64_t before = program.host.yields;
    program.Click(button);
    return (program.host.yields - before + kOthers) / kMany;
  }
};

}  // namespace

TEST_F(Yields, RowsYieldWhenFoundListedRemovedAndRead) {
  program.server.AnswerAt(ListPath("abc"),
                          {Page(TrackList(std::vector<Track>(kMany, {"en", "English", ""})))});
  program.Search({});
  EXPECT_EQ(LoopsOf("PushButton2"), 3);
  program.Form().Listbox1.UserSelects({0});
  program.Click("SRTBox");
  EXPECT_EQ(LoopsOf("PushButton1"), 3) << "rows, cues formed and cues written";
  EXPECT_EQ(LoopsOf("PushButton3"), 3) << "rows, cues and hits";
  program.server.AnswerAt(ListPath("abc"), {Page(TrackList({{"en", "English", ""}}))});
  EXPECT_EQ(LoopsOf("PushButton2"), 1);
}

TEST_F(Yields, DownloadYieldsForEachCueFormedAndWritten) {
  program.Search({0});
  program.Click("TextBox lineBox timecodeBox");
  EXPECT_EQ(LoopsOf("PushButton1"), 1);
  for (const char* captions : {"SRTBox", "WebVTTBox"}) {
    program.Click(captions);
    EXPECT_EQ(LoopsOf("PushButton1"), 2) << captions;
  }
}

TEST_F(Yields, WordSearchYieldsForEachCueAndSavingForEachHit) {
  program.Search({0});
  program.Form().searchField.UserTypes("nowhere");
  EXPECT_EQ(LoopsOf("PushButton3"), 2);
  program.Form().searchField.UserTypes("word");
  EXPECT_EQ(LoopsOf("PushButton3"), 2);
  EXPECT_EQ(LoopsOf("SearchWin.saveBtn"), 2);
}
