// A plain word gives the same match as the regular expression in every target.

#include <gtest/gtest.h>

#include <random>

#include "runtime/PlainWord.h"
#include "support/plain_ways.h"

TEST(PlainWord, AcceptsOnlyCharactersWithoutASpecialMeaning) {
  for (const char* plain : {"a", "Orchestra", "azAZ09", "two words", "it's", "7:30", "is"})
    EXPECT_TRUE(PlainWord::From(plain)) << plain;
  for (const char* other : {"", "a.b", "a?", "\xD0\xBC", "[a]", "a|b", "(", "s", "KS", "\\d", "a\n", "^a",
                            "a$", "a{2}", "#", "*", "+"})
    EXPECT_FALSE(PlainWord::From(other)) << other;
}

TEST(PlainWord, GivesTheMatchOfTheRegularExpression) {
  const StringArray pieces = Split(
      "a|A|b|B|k|K|\xE2\x84\xAA|s|\xC5\xBF|S|i|I|t|h|e|o| |x|X|z|Z|:9|'|\xC5|\xE2\x84|\xFF|\xD0\x9C|\n|aaa",
      "|");
  std::mt19937 random(3);
  RegEx plain, grouped;
  for (const char* word :
       {"a", "ab", "KISS", "skis", "the", "o o", "aaab", "x", "is", "'", "Zz:9", "sas", "ask", "kab"}) {
    for (int i = 0; i < 4000; ++i) {
      std::string target;
      for (auto n = random() % 24; n > 0; --n) target += pieces[random() % pieces.size()];
      ASSERT_EQ(FirstMatch(plain, word, target), FirstMatch(grouped, Grouped(word), target))
          << word << " in " << target;
    }
  }
}
