// Captions from the site, through the real yt-dlp.

#include "site_fixture.h"

namespace {

using namespace site_test;
using gateway::SiteSource;

TEST(GatewaySite, ListsWrittenAndAutomaticTracksAndFetchesTheirTexts) {
  const Site site;
  SiteSource source(site.Settings(), Quick());
  const auto list = source.Tracks(CodeOf("plain"), {});
  EXPECT_EQ(list.title, "A walk: \"plain\" / today");
  EXPECT_EQ(Shown(list), "de=German \"formal\", en=English, fr-orig=French (automatic)");
  EXPECT_EQ(list.cause, "");
  EXPECT_NE(TextOf(source.Text(CodeOf("plain"), "en", {})).find(">R&D in en<"), std::string::npos);
  EXPECT_NE(TextOf(source.Text(CodeOf("plain"), "fr-orig", {})).find(">R&D in fr<"), std::string::npos);
  EXPECT_EQ(site.Requests("list").size(), 1u) << "texts go by the list in memory";
}

}  // namespace
