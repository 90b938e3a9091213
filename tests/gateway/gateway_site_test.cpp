// Captions from the site through the real yt-dlp: lists, texts, and the cause of each failure.

#include "site_fixture.h"

namespace {

using namespace site_test;
using gateway::SiteSource;

const std::string kTooMany = "Too many requests to the site; try again in an hour.";
const std::string kRefused = "The site refused the request.";
const std::string kInTrouble = "The site is in trouble; try again later.";

TEST(GatewaySite, AVideoIsListedAndFetchedAndNothingIsLeft) {
  const Site site;
  const std::size_t descriptors = OpenDescriptors();
  {
    SiteSource source(site.Settings(), Quick());
    const auto list = source.Tracks(CodeOf("plain"), {});
    EXPECT_EQ(Shown(list), "de=German \"formal\", en=English, fr-orig=French (automatic)");
    EXPECT_EQ(list.cause, "");
    EXPECT_NE(TextOf(source.Text(CodeOf("plain"), "de", {})).find(">R&D in de<"), std::string::npos);
    EXPECT_NE(TextOf(source.Text(CodeOf("plain"), "fr-orig", {})).find(">R&D in fr<"), std::string::npos);
    for (const std::string language : {"fr", "nl", "", "../de", "c", "--exec=x"})
      EXPECT_EQ(source.Text(CodeOf("plain"), language, {}).cause,
                "This video has no captions in this language.");
    EXPECT_EQ(site.Requests("list").size(), 1u) << "texts use the list in memory";
    source.Text(CodeOf("silent"), "../de", {});
    EXPECT_EQ(site.Requests("list " + CodeOf("silent")).size(), 0u) << "no track has this language";
    EXPECT_NE(TextOf(source.Text(CodeOf("-Qn3_tW8"), "en", {})).find(">R&D in en<"), std::string::npos)
        << "a text without a list fetches the list first";
  }
  EXPECT_EQ(site.ChildrenLeft(), std::set<pid_t>());
  EXPECT_EQ(site.Scratch().Count(), 0u);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST(GatewaySite, AnEmptyListHasItsCauseAndOnlyVerdictsAreKept) {
  constexpr std::size_t kVerdicts = 8;  // the first ones: they are not requested again
  const std::pair<std::string, std::string> cases[] = {
      {"private", "This video is private."},
      {"removed", "This video is unavailable or removed."},
      {"absent", "This video is unavailable or removed."},
      {"age", "This video is age-restricted and needs a sign-in."},
      {"members", "This video is for members only."},
      {"country", "This video is not available in this country."},
      {"upcoming", "This video has not begun."},
      {"silent", "This video has no captions."},
      {"bot", "The site wants a sign-in from this network; wait, or give yt-dlp cookies."},
      {"limited", kTooMany},
      {"e429", kTooMany},
      {"e403", kRefused},
      {"e500", kInTrouble},
      {"bare", "yt-dlp doesn't understand the site; update it."},
  };
  const Site site;
  gateway::SiteLimits limits = Quick();
  limits.pause = 0ms;
  limits.children = 4;
  SiteSource source(site.Settings(), limits);
  AllAtOnce(std::size(cases), [&](std::size_t i) {
    const auto& [video, cause] = cases[i];
    for (int time = 0; time < 2; ++time) EXPECT_EQ(source.Tracks(CodeOf(video), {}).cause, cause) << video;
    // Some releases retry the page by themselves after an error 500.
    const std::size_t asked = site.Requests("list " + CodeOf(video)).size(), lists = i < kVerdicts ? 1 : 2;
    EXPECT_TRUE(asked == lists || (video == "e500" && asked == 4)) << video << " " << asked;
  });
  EXPECT_EQ(site.ChildrenLeft(), std::set<pid_t>()) << "no text can follow";
}

TEST(GatewaySite, AMissingTextHasItsCause) {
  const std::tuple<std::string, std::string, std::size_t> cases[] = {
      {"html", "The site sent no captions: this file is a web page.", 1},
      {"empty", "The site sent empty captions.", 1},
      {"e403", kRefused, 2},
      {"e404", kRefused, 2},
      {"e410", kRefused, 2},
      {"e429", kTooMany, 1},
      {"e500", kInTrouble, 2},
      {"cut", "The connection to the site broke off.", 2},
      {"flood", "The captions are too large.", 1},
  };
  const Site site;
  gateway::SiteLimits limits = Quick();
  limits.pause = 0ms;
  limits.fileBytes = 1 << 20;
  SiteSource source(site.Settings(), limits);
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "");
  AllAtOnce(std::size(cases), [&](std::size_t i) {
    const auto& [track, cause, texts] = cases[i];
    EXPECT_EQ(source.Text(CodeOf("faults"), track, {}).cause, cause) << track;
    EXPECT_EQ(site.Requests("text " + CodeOf("faults") + " " + track).size(), texts) << track;
  });
}

TEST(GatewaySite, ExpiredLinksAreListedAgain) {
  const Site site;
  SiteSource source(site.Settings(), Quick());
  EXPECT_NE(TextOf(source.Text(CodeOf("faults"), "expired", {})).find(">R&D in expired<"), std::string::npos);
  EXPECT_EQ(site.Requests("list").size(), 2u);
  EXPECT_EQ(site.Requests("text").size(), 2u);
  for (int time = 0; time < 2; ++time) EXPECT_EQ(source.Tracks(CodeOf("soon"), {}).cause, "");
  EXPECT_EQ(site.Requests("list " + CodeOf("soon")).size(), 2u) << "links that expire within ten minutes";
}

TEST(GatewaySite, NoChildStartsForAWhileAfterTooManyRequests) {
  const Site site;
  SiteSource source(site.Settings(), Quick());
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "");
  EXPECT_EQ(site.Children().size(), 1u) << "the warm one";
  EXPECT_EQ(source.Text(CodeOf("faults"), "e429", {}).cause, kTooMany);
  EXPECT_EQ(site.Children().size(), 0u);
  EXPECT_EQ(source.Tracks(CodeOf("plain"), {}).cause, kTooMany);
  EXPECT_EQ(source.Text(CodeOf("faults"), "slow", {}).cause, kTooMany);
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "") << "its list is in memory";
  EXPECT_EQ(site.Requests("").size(), 2u);
}

TEST(GatewaySite, OneChildIsKeptWarmAndUsed) {
  const Site site;
  const TemporaryFolder folder;
  gateway::SiteSettings settings = site.Settings();
  settings.program =
      WriteScript(folder / "yt-dlp", "echo >> " + folder / "starts" + "\nexec /usr/bin/yt-dlp \"$@\"");
  {
    SiteSource source(settings, Quick());
    source.Tracks(CodeOf("many"), {});
    const auto first = site.Children();
    EXPECT_EQ(source.Text(CodeOf("many"), "x00", {}).cause, "");
    EXPECT_EQ(site.Children().size(), 1u);
    EXPECT_NE(site.Children(), first);
  }
  EXPECT_EQ(ReadFile(folder / "starts").size(), 3u) << "one for the list, and two warm ones";
}

}  // namespace
