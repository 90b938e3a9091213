// The user's folders and the site as one source.

#include <gtest/gtest.h>

#include "descriptors.h"
#include "gateway/sources/FolderSource.h"
#include "gateway/sources/JoinedSource.h"
#include "sources_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace gateway_test;
using gateway::FolderSource;
using Lines = std::vector<std::string>;

TEST(Joined, AListContainsTheTracksOfBothSources) {
  const TemporaryFolder folder;
  WriteFile(folder / "[abc].en.srt", Srt("own"));
  WriteFile(folder / "[bad].en.srt", "");
  FolderSource folders({folder.Path()});
  FakeSite site;
  site.list = {{{"en", "English (automatic)", "English", true}, {"de", "German", "Deutsch"}}, ""};
  site.texts = {{"en", "site en"}, {"de", "site de"}};
  gateway::JoinedSource joined(folders, site);
  EXPECT_EQ(Listed(joined.Tracks("abc", {})), (Lines{"en=English", "de=German"}));
  EXPECT_EQ(Listed(joined.Tracks("xyz", {})), (Lines{"en=English (automatic) *", "de=German"}));
  EXPECT_EQ(BytesOf(joined.Text("abc", "en", {})), Srv1("own"));
  EXPECT_EQ(BytesOf(joined.Text("abc", "de", {})), "site de");
  EXPECT_EQ(BytesOf(joined.Text("abc", "fr", {})), "no network");
  EXPECT_EQ(BytesOf(joined.Text("bad", "en", {})), "site en");
  site.texts.clear();
  site.list = {{}, "private"};
  EXPECT_EQ(Listed(joined.Tracks("abc", {})), (Lines{"en=English", "private"}));
  EXPECT_EQ(Listed(joined.Tracks("xyz", {})), Lines{"private"});
  EXPECT_EQ(Listed(joined.Tracks("bad", {})), Lines{"The file [bad].en.srt: this file is empty. private"});
  EXPECT_EQ(BytesOf(joined.Text("bad", "en", {})), "The file [bad].en.srt: this file is empty. no network");
}

TEST(Joined, AListWithTracksOfAFolderDoesNotWaitForASlowSite) {
  const TemporaryFolder folder;
  WriteFile(folder / "[abc].en.srt", Srt("own"));
  FolderSource folders({folder.Path()});
  FakeSite site;
  site.keepsWaiting = true;
  {
    gateway::JoinedSource joined(folders, site, 50ms);
    for (int time = 0; time < 2; ++time) EXPECT_EQ(Listed(joined.Tracks("abc", {})), Lines{"en=English"});
    EXPECT_EQ(site.asked, 1) << "the first request continues";
  }
  EXPECT_EQ(site.left, 1) << "it ends with the source";
}

}  // namespace
