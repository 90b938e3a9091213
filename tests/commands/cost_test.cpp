// Ten times the cues may take ten times as long, and more on a busy machine; a quadratic step takes a hundred
// times as long.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/Program.h"
#include "support/clocks.h"
#include "support/rows.h"

namespace {

constexpr double kMostGrowth = 25;

std::string LongDocument(std::size_t cues) {
  return Document(std::vector<Cue>(cues, {"1.25", "1.5", "It&amp;#39;s cue\nnumber 5"}));
}

// Processor time of this process: other processes and the disk don't count.
double SecondsOf(const std::function<void()>& work) {
  const double start = ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
  work();
  return ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - start;
}

}  // namespace

TEST(Cost, CommandsAreLinearInTheCues) {
  Program program({{"s", "Short", LongDocument(10'000)}, {"l", "Long", LongDocument(100'000)}});
  program.Search({});
  program.Form().searchField.UserTypes("NUMBER .*[05]$");
  const auto timeOf = [&](const std::string& button, std::int64_t row) {
    program.Form().Listbox1.UserSelects({row});
    program.WillSave("out");
    const double seconds = SecondsOf([&] { program.Click(button); });
    program.host.saves.clear();
    return seconds;
  };
  for (const auto& row : Rows("TextBox lineBox timecodeBox~PushButton1|paragraphBox~PushButton1|"
                              "SRTBox~PushButton1|WebVTTBox~PushButton1|~PushButton3")) {
    program.Click(row[0]);
    const double few = std::min(timeOf(row[1], 0), timeOf(row[1], 0));
    EXPECT_LT(timeOf(row[1], 1), kMostGrowth * std::max(few, 0.001)) << row[0];
  }
}

TEST(Cost, ListingIsLinearInTheTracks) {
  Program program;
  const auto timeOf = [&](std::size_t tracks) {
    program.server.AnswerAt(ListPath("abc"),
                            {Page(TrackList(std::vector<Track>(tracks, {"en", "English", ""})))});
    program.Search({});
    const double seconds = SecondsOf([&] { program.Click("PushButton2"); });  // removes the old rows as well
    EXPECT_EQ(program.Form().Listbox1.ListCount(), static_cast<std::int64_t>(tracks));
    return seconds;
  };
  const double few = std::min(timeOf(10'000), timeOf(10'000));
  EXPECT_LT(timeOf(100'000), kMostGrowth * std::max(few, 0.001));
}
