// Limits of the whole program, with input just inside and outside of them.

#include <gtest/gtest.h>

#include "ravelyn/commands.h"
#include "support/Program.h"

// Ticks are sixtieths of a second: at the last one of the time-out the program still waits.
TEST(Limits, SilenceEndsASearchAndADownloadAfterTheirTimeOuts) {
  for (const auto& [button, seconds] : {std::pair("PushButton2", 300), {"PushButton1", 30}}) {
    Program program({{"en", "English", ""}});
    program.Search({0});
    program.Click("SRTBox");
    program.Calls();
    program.server.AnswerAt(ListPath("abc"), {"", Reply::End::Stall});
    program.server.AnswerAt(TrackPath("abc", "en"), {"", Reply::End::Stall});
    const int before = program.server.Answered();
    int looks = 0;
    program.host.onYield = [&, end = program.host.ticks + seconds * 60] {
      if (program.server.Answered() == before) return;
      ++looks;
      program.host.ticks = end + (looks <= 5 ? 0 : looks < 9 ? 1 : 99'999);
    };
    program.Click(button);
    EXPECT_EQ(program.Calls().size(), 1U) << button;
    EXPECT_TRUE(looks > 5 && looks < 9) << button << looks;
  }
}

TEST(Limits, LongPreferencesAreCutAndSavedAsRead) {
  Program first;
  const TemporaryFolder prefs;
  const std::string file = prefs / "com.tarnvale.ravelyn.user.prefs";
  WriteFile(file, std::string((1 << 20) - 5, 'x') + "\ntrue\nmore\n");
  first.app.Stop();
  WaitingPlatform host;
  host.prefsFolder = prefs.Path();
  App app(host, kCommands, EndpointsAt(first.server.Host()));
  app.Start();
  app.Stop();
  EXPECT_EQ(ReadFile(file), std::string(4096, 'x') + "\ntrue\n\n\n\n");
}
