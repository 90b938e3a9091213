// The site's source with many clients, with clients that leave, and when it ends during requests.

#include "site_fixture.h"

namespace {

using namespace site_test;
using namespace gateway;

TEST(GatewaySiteLoad, FiftyRequestsAtOnceForOneVideoStartOneChild) {
  const Site site;
  SiteSource source(site.Settings(), Quick());
  AllAtOnce(50, [&](std::size_t) { EXPECT_EQ(source.Tracks(CodeOf("slow"), {}).tracks.size(), 3u); });
  EXPECT_EQ(site.Requests("list").size(), 1u);
  const std::string faults = CodeOf("faults");
  AllAtOnce(50, [&](std::size_t) {
    EXPECT_NE(TextOf(source.Text(faults, "slow", {})).find(">R&D in slow<"), std::string::npos);
  });
  EXPECT_EQ(site.Requests("list " + faults).size(), 1u);
  EXPECT_EQ(site.Requests("text " + faults).size(), 1u);
}

TEST(GatewaySiteLoad, NineRequestsRunAtMostTwoChildrenAndOneList) {
  const Site site;
  SiteLimits limits = Quick();
  limits.betweenLists = 1s;
  SiteSource source(site.Settings(), limits);
  const auto start = std::chrono::steady_clock::now();
  AllAtOnce(9, [&](std::size_t i) {
    const std::string track = "x0" + std::to_string(i);
    if (i < 3) {
      EXPECT_EQ(source.Tracks(CodeOf("slow" + std::to_string(i)), {}).cause, "");
    } else {
      EXPECT_NE(TextOf(source.Text(CodeOf("many"), track, {})).find(track), std::string::npos);
    }
  });
  EXPECT_GE(std::chrono::steady_clock::now() - start, 3s) << "four lists, a second apart";
  EXPECT_EQ(site.MostAtOnce("list"), 1);
  EXPECT_LE(site.MostAtOnce("text"), 2);
}

TEST(GatewaySiteLoad, AFetchStopsWhenItsLastClientLeaves) {
  Site site;
  SiteSource source(site.Settings(), Quick());
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "");
  Client first, second;
  CaptionText text;
  std::thread leaving([&] { source.Text(CodeOf("faults"), "slow", first.Asks()); });
  site.Await("text " + CodeOf("faults") + " slow");
  std::thread staying([&] { text = source.Text(CodeOf("faults"), "slow", second.Asks()); });
  first.Leave();
  leaving.join();
  staying.join();
  EXPECT_NE(TextOf(text).find(">R&D in slow<"), std::string::npos);
  Client third;
  std::thread alone([&] { source.Text(CodeOf("faults"), "stall", third.Asks()); });
  site.Await("text " + CodeOf("faults") + " stall");
  EXPECT_EQ(site.Children().size(), 2u) << "the stalled one and the warm one";
  third.Leave();
  alone.join();
  EXPECT_EQ(site.Children().size(), 1u);
  EXPECT_EQ(site.Scratch().Count(), 1u);
}

TEST(GatewaySiteLoad, AnEndDuringRequestsLeavesNothing) {
  Site site;
  auto source = std::make_unique<SiteSource>(site.Settings(), Quick());
  EXPECT_EQ(source->Tracks(CodeOf("faults"), {}).cause, "");
  std::vector<std::thread> asking;
  for (const std::string track : {"stall", "drip", "slow"})
    asking.emplace_back([&, track] { EXPECT_FALSE(source->Text(CodeOf("faults"), track, {}).document); });
  asking.emplace_back([&] { EXPECT_NE(source->Tracks(CodeOf("stall"), {}).cause, ""); });
  site.Await("text");
  const auto start = std::chrono::steady_clock::now();
  source.reset();
  for (auto& thread : asking) thread.join();
  EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
  EXPECT_EQ(site.ChildrenLeft(), std::set<pid_t>());
  EXPECT_EQ(site.Scratch().Count(), 0u);
}

TEST(GatewaySiteLoad, ASlowSiteEndsRequestsAtTheirDeadline) {
  const Site site;
  SiteLimits limits = Quick();
  limits.list = 1s;
  limits.children = 4;
  SiteSource lists(site.Settings(), limits);
  limits = Quick();
  limits.text = 3s;
  SiteSource texts(site.Settings(), limits);
  EXPECT_EQ(texts.Tracks(CodeOf("faults"), {}).cause, "");
  const std::vector<std::string> names = {"stall", "drip", "flood", "stall", "drip"};
  const auto start = std::chrono::steady_clock::now();
  AllAtOnce(names.size(), [&](std::size_t i) {
    const std::string cause =
        i < 3 ? lists.Tracks(CodeOf(names[i]), {}).cause : texts.Text(CodeOf("faults"), names[i], {}).cause;
    EXPECT_EQ(cause, "The site took too long.") << names[i];
  });
  // A text whose list takes all of its time.
  EXPECT_EQ(texts.Text(CodeOf("stall"), "en", {}).cause, "The site took too long.");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
  EXPECT_EQ(site.Children().size(), 1u) << "the warm one";
}

}  // namespace
