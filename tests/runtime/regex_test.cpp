// Regular expressions: patterns as users type them, targets as servers send them.

#include "runtime/RegEx.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <tuple>

#include "runtime/exceptions.h"
#include "support/rows.h"

namespace {

using Clock = std::chrono::steady_clock;

// "start+length" of the first match, "" for none.
std::string Found(const std::string& pattern, std::string_view target, const RegExOptions& options = {}) {
  RegEx regex;
  regex.Options = options;
  regex.SearchPattern = pattern;
  const RegExMatch* match = regex.Search(target);
  return match ? std::to_string(match->start) + "+" + std::to_string(match->length) : "";
}

TEST(RegEx, MatchesCharactersByUnicode) {
  // Pattern, target, start and length of the match.
  for (const auto& row :
       Rows("\\?v=~watch?v=a~5+3|МОСКВА~в_москва~3+12|straße~STRASSE~|ÉTÉ~l'été~2+5|ΣΊΣΥΦΟΣ~σίσυφος~0+14|"
            "a.b~aéb~0+4|^.$~😀~0+4|a.b~a\nb~0+3|\\w+~—été!~3+5|\\d~٣~0+2|~abc~0+0|^b~a\nb~|a$~a\nb~|x~~|"
            "u.be/~U.BE/x~0+5|(b)c~xbc~1+2"))
    EXPECT_EQ(Found(row[0], row[1]), row[2]) << row[0];
}

TEST(RegEx, NeverMatchesBytesThatAreNotUTF8) {
  EXPECT_EQ(Found("dog", "\xFF\xFE dog \xC3"), "3+3");
  EXPECT_EQ(Found("МОСКВА", "\x80\xD0 москва"), "3+12");
  EXPECT_EQ(Found("a.z", "a\xFFz") + Found("z$", "\xE2\x82z"), "2+1");
  EXPECT_EQ(Found(".", "\xFF\xFF"), "");
  EXPECT_EQ(Found("b", std::string_view("a\0b", 3)), "2+1");
}

TEST(RegEx, ABadPatternGivesItsPositionAndReason) {
  for (const auto& row :
       Rows("a(b~4~parenthes|*a~1~quantifier|[é~3~class|é\\~3~end|a{3,1}~6~order|(?<x~5~name|"
            "\xFF~1~UTF-8|a\\C~4~\\C")) {
    try {
      Found(row[0], "text");
      ADD_FAILURE() << row[0];
    } catch (const RegExSearchPatternException& e) {
      EXPECT_EQ(std::to_string(e.Position()), row[1]) << row[0] << ": " << e.what();
      EXPECT_NE(std::string(e.what()).find(row[2]), std::string::npos) << row[0] << ": " << e.what();
    }
  }
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
  EXPECT_THROW(Found("[^x]*needle", std::string(1'000'000, 'n')), RegExMatchLimitException);
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
    RegExOptions options;
    options.*option = !(options.*option);
    EXPECT_EQ(Found(pattern, target) == match, option == &RegExOptions::ReplaceAllMatches) << pattern;
    EXPECT_EQ(Found(pattern, target, options), match) << pattern;
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
  EXPECT_THROW(for (int i = 0; i < 100; ++i) regex.Search(target), RegExMatchLimitException);
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
                              "(\\w+\\W+){3}needle", "[^x]*needle", ".+needle$"})
    EXPECT_EQ(Found(pattern, std::string_view(text).substr(0, 4'000)), "") << pattern;
  EXPECT_EQ(Found("(?:.|\\n)*Ende", std::string_view(text).substr(0, 52 * 2000)), "0+103991");
  for (const char* pattern : {"needle", "[a-z]+needle", "(?:wet|dry) and", "\\d+:\\d+"})
    EXPECT_EQ(Found(pattern, text), "") << pattern;
}

}  // namespace
