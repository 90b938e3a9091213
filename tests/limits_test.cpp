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

std::string NoConnection(int code) {
  return "message: Error code: " + std::to_string(code) +
         " - A connection to YouTube was not able to be established. Check your internet connection and try "
         "again.";
}

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

TEST(Limits, AnEndlessBodyEndsAt256MiB) {
  Pouring program("HTTP/1.0 200 OK\r\n\r\n", std::string(1 << 20, 'x'));
  Window1::Get().PushButton1.PersonClicks();
  EXPECT_EQ(program.host.calls, Lines{NoConnection(kErrorReplyTooLarge)});
  EXPECT_FALSE(std::filesystem::exists(program.folder / "a.srt"));
}

TEST(Limits, HeadersWithoutAnEndEndAt1MiB) {
  Pouring program("HTTP/1.0 200 OK\r\n", "Some-Name: some value\r\n");
  Window1::Get().PushButton1.PersonClicks();
  EXPECT_EQ(program.host.calls, Lines{NoConnection(kErrorReplyTooLarge)});
  program.host.calls.clear();
  Window1::Get().PushButton3.PersonClicks();
  EXPECT_EQ(program.host.calls, Lines{NoConnection(kErrorReplyTooLarge)});
}

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

TEST(Limits, ARunawayTermIsGivenUpForAWholeTrack) {
  std::vector<Cue> cues;
  for (int i = 0; i < 500; ++i) cues.push_back({std::to_string(i), "1", std::string(64, 'a') + "b"});
  Program program({{"en", "English", Document(cues)}});
  program.Search({0});
  program.Form().searchField.PersonTypes("(a+)+(a+)+$");
  program.Calls();
  const Clock::time_point start = Clock::now();
  program.Click("PushButton3");
  EXPECT_LT(Clock::now() - start, milliseconds(10'000));  // half a second of matching, on any machine
  EXPECT_EQ(
      program.Calls(),
      Lines{"message: The term \"(a+)+(a+)+$\" could not be searched for: it would take too long to match."});
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
