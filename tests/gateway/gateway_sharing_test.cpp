// Requests that several clients share, the child that waits for the next one, and remembered answers: who
// waits how long, what ends with the last client, and what continues.

#include <atomic>
#include <new>
#include <thread>

#include "descriptors.h"
#include "gateway/sources/BackgroundLists.h"
#include "gateway/sources/Places.h"
#include "gateway/sources/SharedJobs.h"
#include "gateway/sources/SiteMemory.h"
#include "gateway/sources/SiteSource.h"
#include "gateway/sources/WarmChild.h"
#include "support/TemporaryFolder.h"
#include "support/clocks.h"

namespace {

using namespace gateway_test;
using namespace gateway;

// Answers once it is released. If its client leaves before, it takes until resumed.
struct HeldSource : CaptionSource {
  TrackList Tracks(std::string_view code, const Requester& requester) override {
    ++requests;
    started.Set();
    if (code == "memory") throw std::bad_alloc();
    if (WaitFor(released.Number(), Patience::Of(requester, For(20s).deadline)) == Waited::Ready)
      return {{}, "answered"};
    left.Set();
    WaitFor(resumed.Number(), For(20s));
    return {{}, "given up"};
  }
  CaptionText Text(std::string_view, std::string_view, const Requester&) override { return {}; }

  std::atomic<int> requests = 0;
  Event started, released, left, resumed;
};

std::string CauseOf(const std::optional<TrackList>& list) { return list ? list->cause : "none"; }

TEST(BackgroundLists, ARequestOutlivesARequesterWithoutPatience) {
  HeldSource source;
  BackgroundLists lists(source);
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 0ms)), "none");
  source.released.Set();
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 60s)), "answered");
  const int requests = source.requests;
  EXPECT_LE(requests, 2) << "the second time may come after the first answer";
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 60s)), "answered");
  EXPECT_EQ(source.requests, requests + 1) << "an answer that somebody got serves no other";
  EXPECT_EQ(CauseOf(lists.Ask("memory", {}, 60s)), "The gateway ran out of memory.");
}

TEST(BackgroundLists, ARequestEndsWithItsLastClient) {
  HeldSource source;
  BackgroundLists lists(source);
  Client client;
  std::thread asking([&] { EXPECT_EQ(CauseOf(lists.Ask("a", client.Asks(), 60s)), "none"); });
  WaitFor(source.started.Number(), For(60s));
  client.Leave();
  asking.join();
  EXPECT_EQ(WaitFor(source.left.Number(), For(10s)), Waited::Ready);
  source.released.Set();
  EXPECT_EQ(CauseOf(lists.Ask("a", {}, 10s)), "answered") << "by a request of its own";
  EXPECT_EQ(source.requests, 2);
  source.resumed.Set();
}

TEST(BackgroundLists, TheSeventeenthVideoIsNotRequested) {
  HeldSource source;
  source.resumed.Set();
  {
    BackgroundLists lists(source);
    for (int i = 0; i < 17; ++i) EXPECT_EQ(CauseOf(lists.Ask(std::to_string(i), {}, 0ms)), "none");
  }
  EXPECT_EQ(source.requests, 16);
}

#ifndef RAVELYN_SANITIZED  // which needs descriptors of its own to check an exception that is caught
TEST(BackgroundLists, WithoutDescriptorsNothingIsRequested) {
  HeldSource source;
  BackgroundLists lists(source);
  SharedJobs jobs;
  const std::string event = "can't make an event counter", pair = "no descriptor left";
  for (const std::size_t count : {0u, 1u}) {
    testing::internal::CaptureStderr();
    {
      const FewDescriptors few(count);
      EXPECT_EQ(CauseOf(lists.Ask("a", {}, 60s)), "none");
      EXPECT_EQ(jobs.Ask("a", For(60s), {}).cause.sentence, "The gateway can't fetch anything now.");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ravelyn-gateway: can't request a list: " + (count == 0 ? event : pair) +
                  ": Too many open files\n" + "ravelyn-gateway: " + event + ": Too many open files\n");
  }
  EXPECT_EQ(source.requests, 0);
}
#endif

TEST(SharedJobs, GiveEachWaiterTheAnswerOrItsOwnCause) {
  SharedJobs jobs;
  Event stopped, gone;
  const auto held = [&](int stop) -> SiteAnswer {
    if (WaitFor(stop, For(20s)) == Waited::Ready) stopped.Set();
    return {nullptr, "late", {}};
  };
  EXPECT_EQ(jobs.Ask("a", For(0ms), held).cause.sentence, "The site took too long.");
  EXPECT_EQ(WaitFor(stopped.Number(), For(0ms)), Waited::Ready) << "nobody waits for it";
  gone.Set();
  EXPECT_EQ(jobs.Ask("b", {For(60s).deadline, gone.Number()}, held).cause.sentence,
            "The gateway gave up before the site had answered.");
  EXPECT_EQ(jobs.Ask("c", For(60s), [](int) -> SiteAnswer { throw std::bad_alloc(); }).cause.sentence,
            "The gateway ran out of memory.");
  const auto again = [](int) { return SiteAnswer{nullptr, "again", {}}; };
  EXPECT_EQ(jobs.Ask("a", For(60s), again).document, "again");
}

TEST(SharedJobs, NothingStartsOnceTheyEnd) {
  auto jobs = std::make_unique<SharedJobs>();
  Event started;
  std::string nested;
  const auto held = [&, all = jobs.get()](int stop) -> SiteAnswer {
    started.Set();
    WaitFor(stop, For(60s));
    nested = all->Ask("b", For(60s), [](int) { return SiteAnswer(); }).cause.sentence;
    return {};
  };
  std::thread asking([&, all = jobs.get()] { all->Ask("a", For(60s), held); });
  WaitFor(started.Number(), For(60s));
  jobs.reset();
  asking.join();
  EXPECT_EQ(nested, "The gateway can't fetch anything now.");
}

WarmChild::Start Sleeper(const std::string& command, const std::string& parent) {
  return [=] {
    ScratchFolder folder(parent);
    Child child({"/bin/sh", "-c", command}, folder.Path(), 4096);
    return std::make_unique<ReadyChild>(ReadyChild{std::move(folder), std::move(child)});
  };
}

TEST(WarmChild, IsGivenOnceAndNotAfterItsTimeOrItsEnd) {
  const TemporaryFolder scratch;
  WarmChild lasting(Sleeper("sleep 100", scratch.Path()), 60s);
  EXPECT_FALSE(lasting.Take());
  lasting.Prepare();
  lasting.Prepare();
  EXPECT_TRUE(lasting.Take());
  EXPECT_FALSE(lasting.Take());
  WarmChild ending(Sleeper("exit 0", scratch.Path()), 60s);
  WarmChild expiring(Sleeper("sleep 100", scratch.Path()), 1ms);
  for (int time = 0; time < 2; ++time) {
    ending.Prepare();
    expiring.Prepare();
    for (int wait = 0; scratch.Count() > 0 && wait < 300; ++wait) WaitFor(-1, For(100ms));
    EXPECT_EQ(scratch.Count(), 0u) << "both are removed without being asked for";
  }
  EXPECT_FALSE(ending.Take());
  EXPECT_FALSE(expiring.Take());
}

TEST(WarmChild, WaitsWithoutProcessorTime) {
  const TemporaryFolder scratch;
  WarmChild warm(Sleeper("sleep 100", scratch.Path()), 60s);
  warm.Prepare();
  const double before = ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
  WaitFor(-1, For(300ms));
  warm.Take();
  WaitFor(-1, For(300ms));
  EXPECT_LT(ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before, 0.1);
}

SiteAnswer ListFor(std::chrono::milliseconds time) {
  return {std::make_shared<SiteList>(
              SiteList{std::vector<SiteTrack>(1), std::chrono::system_clock::now() + time}),
          "",
          {}};
}

TEST(Places, ListsTakeAllPlacesButOneAndASinglePlaceIsShared) {
  Places three(3, 0ms), one(1, 0ms);
  const auto list = [](Places& places) { return places.Take(Places::Kind::List, For(0ms)); };
  const auto first = list(three), second = list(three), third = list(three);
  EXPECT_TRUE(first && second && !third);
  EXPECT_TRUE(list(one));
}

TEST(SiteMemory, KeepsVerdictsForATimeOfTheirOwn) {
  SiteLimits limits;
  limits.keepNoCaptions = 0ms;
  SiteMemory memory(limits);
  for (const auto effect : {Effect::NoCaptions, Effect::Verdict}) {
    memory.Keep("code", {std::make_shared<SiteList>(), "", {"Why.", effect}});
    EXPECT_EQ(memory.Find("code").has_value(), effect == Effect::Verdict);
  }
}

TEST(SiteMemory, KeepsSixtyFourListsUntilTheyExpireOrAreReplaced) {
  SiteMemory memory(SiteLimits{});
  memory.Keep("first", ListFor(1h));
  for (int i = 1; i < 64; ++i) memory.Keep(std::to_string(i), ListFor(2h));
  EXPECT_TRUE(memory.Find("first"));
  const SiteAnswer last = ListFor(2h);
  memory.Keep("last", last);
  EXPECT_FALSE(memory.Find("first")) << "it would have expired before the others";
  memory.Forget("first", *last.list);
  memory.Forget("1", *last.list);
  EXPECT_TRUE(memory.Find("1") && memory.Find("last"));
  memory.Forget("last", *last.list);
  EXPECT_FALSE(memory.Find("last"));
  memory.Keep("brief", ListFor(20ms));
  while (memory.Find("brief")) continue;
}

TEST(SiteSource, RefusesWhatIsNoCodeOfTheSite) {
  const TemporaryFolder scratch;
  SiteSource source({"/nonexistent", "", "", scratch.Path()}, {});
  for (const char* code : {"", "abc", "abcdefghijkl", "abcdefghij/", "--exec=xAA&"}) {
    for (const std::string& cause : {source.Tracks(code, {}).cause, source.Text(code, "en", {}).cause})
      EXPECT_EQ(cause, "This is not the code of a video of the site.") << code;
  }
}

}  // namespace
