// Each limit of the program, by the input that goes past it.

#include <gtest/gtest.h>

#include "http/HTTPSocket.h"
#include "runtime/Streams.h"
#include "support/PouringServer.h"
#include "support/Program.h"

namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// The program with one selected track, whose captions come from a server of the test's own.
struct Pouring {
  explicit Pouring(std::string head, std::string piece, milliseconds pause = {})
      : server(std::move(head), std::move(piece), pause) {
    host.prefsFolder = folder.Path();
    app.Start();
    Window1& form = Window1::Get();
    form.TextField1.PersonTypes("https://host/watch?v=abc");
    form.Listbox1.AddRow("English");
    form.Listbox1.PersonSelects({0});
    form.SRTBox.SetValue(true);
    host.calls.clear();
    host.saves = {folder / "a.srt"};
  }

  TemporaryFolder folder;
  PouringServer server;
  WaitingPlatform host;
  App app{host, EndpointsAt(server.Host())};
};

}  // namespace

// A byte now and then keeps a request alive for ever; the person still leaves when they like.
TEST(Limits, ADripIsLeftWithinASecondByClosingOrQuitting) {
  for (const bool quits : {false, true}) {
    for (const bool inHead : {false, true}) {
      SCOPED_TRACE(quits ? "quits" : "closes");
      Pouring program(inHead ? "" : "HTTP/1.0 200 OK\r\n\r\n", "x", milliseconds(1000));
      Clock::time_point left;
      const Clock::time_point leaves = Clock::now() + milliseconds(300);
      program.host.onYield = [&] {
        if (left != Clock::time_point() || Clock::now() < leaves) return;
        left = Clock::now();
        quits ? program.app.Quit() : Window1::Get().PersonCloses();
      };
      Window1::Get().PushButton1.PersonClicks();
      program.host.onYield = nullptr;
      program.app.Stop();
      EXPECT_NE(left, Clock::time_point());
      EXPECT_LT(Clock::now() - left, milliseconds(1000));
      EXPECT_FALSE(std::filesystem::exists(program.folder / "a.srt"));
    }
  }
}

// In ticks, of which 60 are a second: at the last one of the time-out a silent server is still waited for.
TEST(Limits, SilenceEndsASearchAfter300SecondsAndADownloadAfter30) {
  for (const auto& [button, seconds] : {std::pair("PushButton2", 300), {"PushButton1", 30}}) {
    Program program({{"en", "English", ""}});
    program.Search({0});
    program.Click("SRTBox");
    program.Calls();
    program.server.AnswerAt(ListPath("abc"), {"HTTP/1.0 200 OK\r\n", Reply::End::Stall});
    program.server.AnswerAt(TrackPath("abc", "en"), {"HTTP/1.0 200 OK\r\n", Reply::End::Stall});
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

TEST(Limits, ChoicesAreReadInBoundsAndSavedAsTheyWereRead) {
  Program first;
  const TemporaryFolder prefs;
  const std::string file = prefs / "com.tarnvale.ravelyn.user.prefs";
  WriteFile(file, std::string(8 << 20, 'x') + "\ntrue\n");
  first.app.Stop();
  WaitingPlatform host;
  host.prefsFolder = prefs.Path();
  App app(host, EndpointsAt(first.server.Host()));
  app.Start();
  EXPECT_EQ(app.checkedDL, std::string(TextInputStream::kLongestLine, 'x'));
  EXPECT_EQ(app.openDL, "");
  app.Stop();
  EXPECT_EQ(ReadFile(file), std::string(TextInputStream::kLongestLine, 'x') + "\n\n\n\n\n");
}
