// How a command ended, in words.

#include "app/Progress.h"

#include <gtest/gtest.h>

TEST(Progress, SaysInOneLineHowACommandEnded) {
  Progress none, list, one, files, apart, mixed, found, nothing;
  list.languages = 8;
  one.CountSaved("/home/u/Documents/a.srt");
  for (const char* name : {"a.srt", "b.srt", "c.srt"})
    files.CountSaved(std::string("/home/u/Documents/") + name);
  for (const char* folder : {"/x/", "/y/", "/y/"}) apart.CountSaved(folder + std::string("a.srt"));
  mixed = files;
  mixed.cancelled = 1, mixed.failed = 2;
  found.searched = 3, found.withHits = 2, found.hits = 10;
  nothing.searched = 1;
  Progress single = found, empty, cancelled;
  single.withHits = single.hits = 1;
  empty.languages = 0;
  cancelled.cancelled = 1;
  const struct {
    const Progress& progress;
    const char* words;
  } cases[] = {
      {none, ""},
      {list, "8 languages"},
      {empty, "No languages"},
      {one, "1 file saved in Documents"},
      {files, "3 files saved in Documents"},
      {apart, "3 files saved"},
      {mixed, "3 saved, 1 cancelled, 2 failed"},
      {cancelled, "1 cancelled"},
      {found, "10 hits in 2 tracks"},
      {single, "1 hit in 1 track"},
      {nothing, "No hits"},
  };
  for (const auto& [progress, words] : cases) EXPECT_EQ(progress.Words(false, 120), words);
  EXPECT_EQ(list.Words(false, 121), "8 languages, after 2.0 s");
  EXPECT_EQ(list.Words(true, 3'690), "Stopped, 8 languages, after 61.5 s");
  EXPECT_EQ(none.Words(true, 0), "Stopped");
  EXPECT_EQ(none.Words(false, 9'999), "");
  EXPECT_EQ(list.Words(false, INT64_MAX), "8 languages, after 153722867280912930.1 s")
      << "a clock that jumps";
}
