// The result of a command in words.

#include "app/Progress.h"

#include <gtest/gtest.h>

namespace {

Progress Saving(const std::vector<std::string>& paths) {
  Progress progress;
  for (const std::string& path : paths) progress.CountSaved(path);
  return progress;
}

}  // namespace

TEST(Progress, CountsGiveOneLineOfWords) {
  const Progress files = Saving({"/home/u/Documents/a.srt", "/home/u/Documents/b.srt"});
  Progress mixed = files;
  mixed.cancelled = 1, mixed.failed = 2;
  const std::pair<Progress, std::string> rows[] = {
      {{}, ""},
      {{.languages = 8}, "8 languages"},
      {{.languages = 0}, "No languages"},
      {Saving({"/home/u/Documents/a.srt"}), "1 file saved in Documents"},
      {Saving({"/a.srt"}), "1 file saved"},
      {files, "2 files saved in Documents"},
      {Saving({"/x/a.srt", "/y/a.srt", "/y/b.srt"}), "3 files saved"},
      {mixed, "2 saved, 1 cancelled, 2 failed"},
      {{.cancelled = 1}, "1 cancelled"},
      {{.failed = 1}, "1 failed"},
      {{.searched = 3, .withHits = 2, .hits = 10}, "10 hits in 2 tracks"},
      {{.searched = 3, .withHits = 1, .hits = 1}, "1 hit in 1 track"},
      {{.searched = 1}, "No hits"},
  };
  for (const auto& [progress, words] : rows) EXPECT_EQ(progress.Words(false, 120), words);
}

TEST(Progress, MoreThanTwoSecondsAndAStopAreNamed) {
  Progress list{.languages = 8};
  EXPECT_EQ(list.Words(false, 121), "8 languages, after 2.0 s");
  list.begun = 1'000;
  EXPECT_EQ(list.Words(false, 1'120), "8 languages");
  EXPECT_EQ(list.Words(true, 4'690), "Stopped, 8 languages, after 61.5 s");
  EXPECT_EQ(Progress().Words(true, 0), "Stopped");
  EXPECT_EQ(Progress().Words(false, 9'999), "");
}

TEST(Progress, AStepCountsTheFilesIfThereAreSeveral) {
  EXPECT_EQ((Progress{.item = "German", .place = 2, .of = 2}.Step()), "German, 2 of 2");
  EXPECT_EQ((Progress{.item = "German", .place = 3, .of = 2}.Step()), "German");
  EXPECT_EQ((Progress{.item = "German", .place = 1, .of = 1}.Step()), "German");
}
