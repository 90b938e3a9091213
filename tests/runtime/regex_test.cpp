// Regular expressions: patterns as users type them, targets as servers send them.

#include "runtime/RegEx.h"

#include <gtest/gtest.h>

#include <chrono>

#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

namespace {

using Clock = std::chrono::steady_clock;

// "start+length" of the first match, "" for none.
std::string Found(const std::string& pattern, std::string_view target) {
  RegEx regex;
  regex.SearchPattern = pattern;
  const RegExMatch* match = regex.Search(target);
  return match ? std::to_string(match->start) + "+" + std::to_string(match->length) : "";
}

TEST(RegEx, MatchesCharactersByUnicode) {
  // Pattern, target, start and length of the match.
  for (const std::string& row : Split(
           "\\?v= watch?v=a 5+3|МОСКВА в_москва 3+12|straße STRASSE |ÉTÉ l'été 2+5|ΣΊΣΥΦΟΣ σίσυφος 0+14|a.b "
           "aéb 0+4|"
           "^.$ 😀 0+4|a.b a\nb 0+3|\\w+ —été! 3+5|\\d ٣ 0+2| abc 0+0|^b a\nb |a$ a\nb |x  |u.be/ U.BE/x 0+5",
           "|"))
    EXPECT_EQ(Found(NthField(row, " ", 1), NthField(row, " ", 2)), NthField(row, " ", 3)) << row;
}

TEST(RegEx, NeverMatchesBytesThatAreNotUTF8) {
  EXPECT_EQ(Found("dog", "\xFF\xFE dog \xC3"), "3+3");
  EXPECT_EQ(Found("МОСКВА", "\x80\xD0 москва"), "3+12");
  EXPECT_EQ(Found("a.z", "a\xFFz") + Found("z$", "\xE2\x82z"), "2+1");
  EXPECT_EQ(Found(".", "\xFF\xFF"), "");
  EXPECT_EQ(Found("b", std::string_view("a\0b", 3)), "2+1");
}

TEST(RegEx, ABadPatternGivesItsPositionAndReason) {
  for (const std::string& row : Split("a(b 4 parenthes|*a 1 quantifier|[é 3 class|é\\ 3 end|a{3,1} 6 "
                                      "order|(?<x 5 name|\xFF 1 UTF-8|a\\C 4 \\C",
                                      "|")) {
    try {
      Found(NthField(row, " ", 1), "text");
      ADD_FAILURE() << row;
    } catch (const RegExSearchPatternException& e) {
      EXPECT_EQ(Str(e.Position()), NthField(row, " ", 2)) << row << ": " << e.what();
      EXPECT_NE(std::string(e.what()).find(NthField(row, " ", 3)), std::string::npos)
          << row << ": " << e.what();
    }
  }
}

TEST(RegEx, SearchesAgainAfterABadPattern) {
  RegEx regex;
  regex.SearchPattern = "(";
  EXPECT_THROW(regex.Search("a"), RegExSearchPatternException);
  regex.SearchPattern = "a";
  EXPECT_NE(regex.Search("ba"), nullptr);
  regex.SearchPattern = "c";
  EXPECT_EQ(regex.Search("ba"), nullptr);
}

TEST(RegEx, GivesUpOnCatastrophicBacktracking) {
  for (const char* pattern : {"(a+)+$", "(a|aa)+$", "(.*)*x", "(a*)*b", "(?:a?){40}a{40}b"}) {
    RegEx regex;
    regex.SearchPattern = pattern;
    const auto start = Clock::now();
    // A whole track of such cues; each search may be given up.
    for (int cue = 0; cue < 200; ++cue) {
      try {
        regex.Search(std::string(60, 'a') + "!");
      } catch (const RegExMatchLimitException&) {
      }
    }
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500)) << pattern;
  }
  EXPECT_THROW(Found("(a+)+$", std::string(60, 'a') + "!"), RegExMatchLimitException);
  const auto start = Clock::now();
  EXPECT_THROW(Found("[^x]*needle", std::string(1'000'000, 'n')), RegExMatchLimitException);
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500));
}

// Each option set to what is not its default.
TEST(RegEx, OptionsChangeTheMatch) {
  const std::tuple<bool RegExOptions::*, const char*, const char*, const char*> cases[] = {
      {&RegExOptions::DotMatchAll, "a.b", "a\nb", ""},
      {&RegExOptions::CaseSensitive, "b", "aBb", "2+1"},
      {&RegExOptions::ReplaceAllMatches, "b", "abb", "1+1"},
      {&RegExOptions::StringBeginIsLineBegin, "^a", "ab", ""},
      {&RegExOptions::StringEndIsLineEnd, "b$", "ab", ""},
      {&RegExOptions::MatchEmpty, "x*", "ax", "1+1"},
      {&RegExOptions::TreatTargetAsOneLine, "^b$", "a\nb\nc", "2+1"},
      {&RegExOptions::Greedy, "a+", "aaa", "0+1"},
  };
  for (const auto& [option, pattern, target, match] : cases) {
    RegEx regex;
    regex.SearchPattern = pattern;
    const RegExMatch* byDefault = regex.Search(target);
    const std::string before =
        byDefault ? std::to_string(byDefault->start) + "+" + std::to_string(byDefault->length) : "";
    EXPECT_EQ(before == match, option == &RegExOptions::ReplaceAllMatches) << pattern;
    RegEx changed;
    changed.SearchPattern = pattern;
    changed.Options.*option = !(changed.Options.*option);
    const RegExMatch* found = changed.Search(target);
    EXPECT_EQ(found ? std::to_string(found->start) + "+" + std::to_string(found->length) : "", match)
        << pattern;
  }
}

// Slow searches, none of which exceeds the limit by itself.
TEST(RegEx, GivesUpWhenAllSearchesTogetherTakeTooLong) {
  std::string target = "aaaaaaaaaaaaaaaa!";
  for (auto taken = Clock::duration(); taken < std::chrono::milliseconds(50) && target.size() < 60;) {
    target.insert(0, "a");
    const auto start = Clock::now();
    EXPECT_EQ(Found("(a+)+$", target), "");
    taken = Clock::now() - start;
  }
  RegEx regex;
  regex.SearchPattern = "(a+)+$";
  int searches = 0;
  try {
    while (++searches < 100) regex.Search(target);
  } catch (const RegExMatchLimitException&) {
  }
  EXPECT_LT(searches, 100);
}

// With a callout at each item the pattern is too large to compile; no match may be reported then.
TEST(RegEx, GivesUpIfThePatternIsTooLargeForTheTimeLimit) {
  std::string words;
  while (words.size() < 6000) words += "word ";
  EXPECT_THROW(Found("(?:[aeiou]|xyz){900}", words), RegExMatchLimitException);
  EXPECT_EQ(Found("(?:[aeiou]|xyz){900}", words.substr(0, 4000)), "");
}

TEST(RegEx, OrdinaryPatternsAreNeverGivenUp) {
  std::string text;
  while (text.size() < 1'000'000) text += "The harbour, at 7.30; \"wet & quiet\", Ende der Straße\n";
  for (const char* pattern : {"needle", "harbour.*needle", "(?:wet|dry) and", "[a-z]+ing\\b", "\\bq\\w+z\\b",
                              "(\\w+) \\1 \\1", "^needle", "\\d+:\\d+", "a.{3}z", "(a|b|c)+needle",
                              "(\\w+\\W+){3}needle", "[^x]*needle", ".+needle$"}) {
    RegEx regex;
    regex.SearchPattern = pattern;
    EXPECT_NO_THROW(EXPECT_EQ(regex.Search(std::string_view(text).substr(0, 4'000)), nullptr)) << pattern;
  }
  EXPECT_EQ(Found("(?:.|\\n)*Ende", std::string_view(text).substr(0, 52 * 2000)), "0+103991");
  for (const char* pattern : {"needle", "[a-z]+needle", "(?:wet|dry) and", "\\d+:\\d+"}) {
    EXPECT_NO_THROW(EXPECT_EQ(Found(pattern, text), "")) << pattern;
  }
}

}  // namespace
