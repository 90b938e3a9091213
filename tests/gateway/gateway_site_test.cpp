// Captions from the site through the real yt-dlp: lists, texts, and the cause of each failure.

#include "site_fixture.h"

namespace {

using namespace site_test;
using gateway::SiteLimits;
using gateway::SiteSource;

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
  EXPECT_EQ(site.Children(), std::set<pid_t>());
  EXPECT_EQ(site.Folders(), 0u);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST(GatewaySite, AnEmptyListHasItsCauseAndOnlyVerdictsAreKept) {
  struct Case {
    std::string video, cause;
    std::size_t lists = 1;  // requests to the site for two to the source
  };
  const std::vector<Case> cases = {
      {"private", "This video is private."},
      {"removed", "This video is unavailable or removed."},
      {"absent", "This video is unavailable or removed."},
      {"age", "This video is age-restricted and needs a sign-in."},
      {"members", "This video is for members only."},
      {"country", "This video is not available in this country."},
      {"upcoming", "This video has not begun."},
      {"silent", "This video has no captions."},
      {"bot", "The site wants a sign-in from this network; wait, or give yt-dlp cookies.", 2},
      {"limited", "Too many requests to the site; try again in an hour.", 2},
      {"e429", "Too many requests to the site; try again in an hour.", 2},
      {"e403", "The site refused the request.", 2},
      {"e500", "The site is in trouble; try again later.", 2},
      {"bare", "yt-dlp doesn't understand the site; update it.", 2},
  };
  const Site site;
  SiteLimits limits = Quick();
  limits.pause = 0ms;
  limits.children = 4;
  SiteSource source(site.Settings(), limits);
  AllAtOnce(cases.size(), [&](std::size_t i) {
    const auto& [video, cause, lists] = cases[i];
    for (int time = 0; time < 2; ++time) {
      const auto list = source.Tracks(CodeOf(video), {});
      EXPECT_EQ(list.cause, cause) << video;
      EXPECT_EQ(list.tracks.size(), 0u) << video;
    }
    // Some releases retry the page by themselves after an error 500.
    const std::size_t asked = site.Requests("list " + CodeOf(video)).size();
    EXPECT_TRUE(asked == lists || (video == "e500" && asked == 2 * lists)) << video << " " << asked;
  });
  EXPECT_EQ(site.Children(), std::set<pid_t>()) << "no text can follow";
}

TEST(GatewaySite, AMissingTextHasItsCause) {
  struct Case {
    std::string track, cause;
    std::size_t texts = 1;
  };
  const std::string refused = "The site refused the request.";
  const std::vector<Case> cases = {
      {"html", "The site sent no captions: this file is a web page."},
      {"empty", "The site sent empty captions."},
      {"e403", refused, 2},
      {"e404", refused, 2},
      {"e410", refused, 2},
      {"e429", "Too many requests to the site; try again in an hour."},
      {"e500", "The site is in trouble; try again later.", 2},
      {"cut", "The connection to the site broke off.", 2},
      {"flood", "The captions are too large."},
  };
  const Site site;
  SiteLimits limits = Quick();
  limits.pause = 0ms;
  limits.fileBytes = 1 << 20;
  SiteSource source(site.Settings(), limits);
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "");
  AllAtOnce(cases.size(), [&](std::size_t i) {
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
  EXPECT_EQ(source.Tracks(CodeOf("soon"), {}).tracks.size(), 3u);
  EXPECT_EQ(source.Tracks(CodeOf("soon"), {}).tracks.size(), 3u);
  EXPECT_EQ(site.Requests("list " + CodeOf("soon")).size(), 2u) << "links that expire within ten minutes";
}

TEST(GatewaySite, NoChildStartsForAWhileAfterTooManyRequests) {
  const Site site;
  SiteSource source(site.Settings(), Quick());
  EXPECT_EQ(source.Tracks(CodeOf("faults"), {}).cause, "");
  EXPECT_EQ(site.Children().size(), 1u) << "the warm one";
  const std::string cause = "Too many requests to the site; try again in an hour.";
  EXPECT_EQ(source.Text(CodeOf("faults"), "e429", {}).cause, cause);
  EXPECT_EQ(site.Children().size(), 0u);
  EXPECT_EQ(source.Tracks(CodeOf("plain"), {}).cause, cause);
  EXPECT_EQ(source.Text(CodeOf("faults"), "slow", {}).cause, cause);
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
    EXPECT_NE(TextOf(source.Text(CodeOf("many"), "x00", {})).find(">R&D in x00<"), std::string::npos);
    const auto second = site.Children();
    EXPECT_EQ(first.size(), 1u);
    EXPECT_EQ(second.size(), 1u);
    EXPECT_NE(first, second);
  }
  EXPECT_EQ(ReadFile(folder / "starts").size(), 3u) << "one for the list, and two warm ones";
}

}  // namespace
