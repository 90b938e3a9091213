// The result of a command in words.

#include "app/Progress.h"

#include <gtest/gtest.h>

TEST(Progress, CountsGiveOneLineOfWords) {
  Progress none, list, one, files, apart, mixed, found, nothing;
  list.languages = 8;
  one.CountSaved("/home/u/Documents/a.srt");
  Progress root;
  root.CountSaved("/a.srt");
  EXPECT_EQ(root.Words(false, 0), "1 file saved");
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
  std::string words;
  for (const Progress& each :
       {none, list, empty, one, files, apart, mixed, cancelled, found, single, nothing})
    words += each.Words(false, 120) + "|";
  EXPECT_EQ(words,
            "|8 languages|No languages|1 file saved in Documents|3 files saved in Documents|3 files saved|"
            "3 saved, 1 cancelled, 2 failed|1 cancelled|10 hits in 2 tracks|1 hit in 1 track|No hits|");
  EXPECT_EQ(list.Words(false, 121), "8 languages, after 2.0 s");
  EXPECT_EQ(list.Words(true, 3'690), "Stopped, 8 languages, after 61.5 s");
  EXPECT_EQ(none.Words(true, 0), "Stopped");
  EXPECT_EQ(none.Words(false, 9'999), "");
  EXPECT_EQ(list.Words(false, INT64_MAX), "8 languages, after 153722867280912930.1 s")
      << "a clock that jumps";
}
