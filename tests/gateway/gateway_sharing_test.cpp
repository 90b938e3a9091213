// Requests that several clients share, and the child that waits for the next one: who waits how long, what
// ends with the last client, and what continues.

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <new>
#include <thread>

#include "gateway/sources/BackgroundLists.h"
#include "gateway/sources/Errands.h"
#include "gateway/sources/SiteSource.h"
#include "gateway/sources/WarmChild.h"
#include "gateway_fixture.h"
#include "support/clocks.h"

namespace {

using namespace std::chrono_literals;
using gateway::Asker;
using gateway::BackgroundLists;
using gateway::CaptionText;
using gateway::Errands;
using gateway::Event;
using gateway::Patience;
using gateway::SiteAnswer;
using gateway::TrackList;

Patience For(std::chrono::milliseconds time) { return {std::chrono::steady_clock::now() + time}; }

// Answers once it is released, or once its client has gone.
struct HeldSource : gateway::CaptionSource {
  TrackList Tracks(std::string_view code, const Asker& asker) override {
    ++requests;
    started.Set();
    if (code == "memory") throw std::bad_alloc();
    const auto waited = WaitFor(released.Number(), Patience::Of(asker, For(60s).deadline));
    ended.Set();
    return {{}, waited == gateway::Waited::Ready ? "answered" : "given up"};
  }
  CaptionText Text(std::string_view, std::string_view, const Asker&) override { return {}; }

  std::atomic<int> requests = 0;
  Event started, released, ended;
};

std::string CauseOf(const std::optional<TrackList>& list) { return list ? list->cause : "none"; }

TEST(BackgroundLists, ARequestOutlivesAnAskerWithoutPatience) {
  HeldSource source;
  BackgroundLists lists(source);
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 0ms)), "none");
  source.released.Set();
  WaitFor(source.ended.Number(), For(60s));
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 60s)), "answered");
  EXPECT_LE(source.requests, 2) << "the second time may come after the first answer";
  EXPECT_EQ(CauseOf(lists.Ask("memory", {}, 60s)), "The gateway ran out of memory.");
}

TEST(BackgroundLists, ARequestEndsWithItsLastClient) {
  HeldSource source;
  BackgroundLists lists(source);
  std::array<int, 2> ends{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
  const gateway::Descriptor ours(ends[0]);
  gateway::Descriptor theirs(ends[1]);
  std::thread client([&] {
    EXPECT_EQ(CauseOf(lists.Ask("a", {std::chrono::steady_clock::now(), ours.Number()}, 60s)), "none");
  });
  WaitFor(source.started.Number(), For(60s));
  theirs = gateway::Descriptor();
  client.join();
  EXPECT_EQ(WaitFor(source.ended.Number(), For(60s)), gateway::Waited::Ready);
  source.released.Set();
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 60s)), "answered") << "by a request of its own";
  EXPECT_EQ(source.requests, 2);
}

TEST(BackgroundLists, TheSeventeenthVideoIsNotRequested) {
  HeldSource source;
  BackgroundLists lists(source);
  for (int i = 0; i < 17; ++i) EXPECT_EQ(CauseOf(lists.Ask(std::to_string(i), {}, 0ms)), "none");
  source.released.Set();
  EXPECT_EQ(CauseOf(lists.Ask("0", {}, 60s)), "answered");
  EXPECT_LE(source.requests, 17) << "sixteen, and the first one perhaps again";
}

TEST(Errands, GiveEachWaiterTheAnswerOrItsOwnCause) {
  Errands errands;
  Event stopped;
  const auto held = [&](int stop) -> SiteAnswer {
    WaitFor(stop, For(60s));
    stopped.Set();
    return {nullptr, "late", {}};
  };
  EXPECT_EQ(errands.Ask("a", For(0ms), held).cause.sentence, "The site took too long.");
  EXPECT_EQ(WaitFor(stopped.Number(), For(60s)), gateway::Waited::Ready) << "nobody waits for it";
  Event gone;
  gone.Set();
  EXPECT_EQ(errands.Ask("b", {For(60s).deadline, gone.Number()}, held).cause.sentence,
            "The gateway gave up before the site had answered.");
  EXPECT_EQ(errands.Ask("c", For(60s), [](int) -> SiteAnswer { throw std::bad_alloc(); }).cause.sentence,
            "The gateway ran out of memory.");
  EXPECT_EQ(errands.Ask("a", For(60s),
                        [](int) -> SiteAnswer {
                          return {nullptr, "again", {}};
                        })
                .document,
            "again");
}

gateway::WarmChild::Start Sleeper(const std::string& command, const std::string& parent) {
  return [=] {
    gateway::ScratchFolder folder(parent);
    gateway::Child child({"/bin/sh", "-c", command}, folder.Path(), 4096);
    return std::make_unique<gateway::ReadyChild>(gateway::ReadyChild{std::move(folder), std::move(child)});
  };
}

TEST(WarmChild, IsGivenOnceAndNotAfterItsTimeOrItsEnd) {
  const TemporaryFolder scratch;
  gateway::WarmChild lasting(Sleeper("sleep 100", scratch.Path()), 60s);
  EXPECT_FALSE(lasting.Take());
  lasting.Prepare();
  lasting.Prepare();
  EXPECT_TRUE(lasting.Take());
  EXPECT_FALSE(lasting.Take());
  gateway::WarmChild ending(Sleeper("exit 0", scratch.Path()), 60s);
  gateway::WarmChild expiring(Sleeper("sleep 100", scratch.Path()), 1ms);
  ending.Prepare();
  expiring.Prepare();
  for (int wait = 0; scratch.Count() > 0 && wait < 600; ++wait) std::this_thread::sleep_for(100ms);
  EXPECT_EQ(scratch.Count(), 0u) << "both are removed without being asked for";
  EXPECT_FALSE(ending.Take());
  EXPECT_FALSE(expiring.Take());
}

TEST(WarmChild, WaitsWithoutProcessorTime) {
  const TemporaryFolder scratch;
  gateway::WarmChild warm(Sleeper("sleep 100", scratch.Path()), 60s);
  warm.Prepare();
  const double before = ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
  WaitFor(-1, For(500ms));
  EXPECT_LT(ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before, 0.1);
}

TEST(SiteSource, RefusesWhatIsNoCodeOrLanguageOfTheSite) {
  const TemporaryFolder scratch;
  gateway::SiteSource source({"/nonexistent", "", "", scratch.Path()}, {});
  for (const char* code : {"", "abc", "abcdefghijkl", "abcdefghij/"}) {
    EXPECT_EQ(source.Tracks(code, {}).cause, "This is not the code of a video of the site.") << code;
    EXPECT_EQ(source.Text(code, "en", {}).cause, "This is not the code of a video of the site.") << code;
  }
  EXPECT_EQ(source.Text("abcdefghijk", "../en", {}).cause, "This video has no captions in this language.");
}

}  // namespace
