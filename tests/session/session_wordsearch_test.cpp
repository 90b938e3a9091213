// The word search and its results window.

#include <array>

#include "support/SessionDriver.h"
#include "wordsearch/SearchWin.h"

namespace {

const std::vector<Track> kTracks = {
    {"en", "English",
     Document({{"62.5", "1", "the orchestra begins"},
               {"70", "1", "nothing here"},
               {"59.99", "1", "an Orchestra of\nthe other theatre"},
               {"3723", "1", "Orch &amp;amp; &amp;quot;a <p>b</p> c <P>  d&amp;quot;"}})},
    {"de", "German",
     Document({{"0", "1", "Orchester und ORCHESTRA"}, {"1", "1", "stra"}, {"2", "1", "orche"}})},
    {"ru", "Russian",
     Document({{"5.129", "1", "Город Москва"}, {"6", "1", "a\xFF\xFEz"}, {"7", "1", "ab\xC3"}})},
    {"rr", "Runaway",
     Document({{"0", "1", "aa"}, {"1", "1", std::string(5000, 'a') + "!"}, {"2", "1", "aa"}})},
    {"xx", "Nothing", Document({})},
    {"yy", "Single", Document({{"1", "1", "alone"}})},
};

std::string Term(const std::string& term, const std::string& what) {
  return Message("The term \"" + term + "\" " + what + ".");
}
std::string NotFound(const std::string& term) { return Term(term, "could not be found"); }

using Results = std::array<std::string, 3>;  // rows, label, count

Results ResultsOf(SessionDriver& driver) {
  const auto state = driver.State();
  const std::string count = state["app"]["searchCount"];
  if (!state["windows"].contains("SearchWin")) return {"", "", count};
  const auto& controls = state["windows"]["SearchWin"]["controls"];
  return {controls["resultsList"]["rows"].dump(), controls["searchTerm"]["text"], count};
}

std::string Displaying(const std::string& count, const std::string& term) {
  return "Displaying " + count + " results for search term: \"" + term + "\".";
}

Lines Search(SessionDriver& driver, const std::string& rows, const std::string& term) {
  return driver.Run("select " + rows + "\ntype searchField " + term + "\nclick PushButton3");
}

const std::string kFirst = R"(["00:01:02.500","the orchestra begins"])";
const std::string kThird = R"(["00:00:59.990","an Orchestra of the other theatre"])";
const std::string kGerman = R"(["00:00:00.000","Orchester und ORCHESTRA"])";
const std::string kNoLink = Message(
    "You must paste the URL of your YouTube movie into the first form field before you can do a word search.");
const Lines kTwice = {Shown("SearchWin"), Shown("SearchWin")};  // when made, and activated at the end

}  // namespace

TEST(WordSearch, FindsEachTermInTheCuesOfATrack) {
  const std::string searches[][4] = {
      {"0", "ORCHESTRA", "[" + kFirst + "," + kThird + "]", "2"},
      {"0", "the", "[" + kFirst + "," + kThird + "]", "2"},  // each cue once; within words as well
      {"0", "^an .*theatre$", "[" + kThird + "]", "1"},
      {"0", "&amp;AMP;", R"([["01:02:03.000","Orch &amp;amp; \"a <p>b</p> c <P>  d\""]])", "1"},
      {"1", "", "[" + kGerman + R"(,["00:00:01.000","stra"],["00:00:02.000","orche"]])", "3"},
      {"2", "^г.{4} м.{5}$", R"([["00:00:05.130","Город Москва"]])", "1"},
      {"2", "Z", R"([["00:00:06.000","a��z"]])", "1"},
      {"2", "^ab", R"([["00:00:07.000","ab�"]])", "1"},
      {"3", "a+$|!",
       R"([["00:00:00.000","aa"],["00:00:01.000",")" + std::string(5000, 'a') +
           R"(!"],["00:00:02.000","aa"]])",
       "3"},
  };
  for (const auto& [row, term, rows, count] : searches) {
    SessionDriver driver;
    driver.OpenWith(kTracks, "");
    EXPECT_EQ(Search(driver, row, term), kTwice) << term;
    EXPECT_EQ(ResultsOf(driver), (Results{rows, Displaying(count, term), count}));
  }
}

TEST(WordSearch, ATermWithoutHitsGivesAMessageAndNoWindow) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  for (const std::string term : {"orchestra begins an", "nothing here ", "zzz", "'", "orchestra\\.", "cat"})
    EXPECT_EQ(Search(driver, "0", term), Lines{NotFound(term)});
  driver.server.AnswerAt(TrackPath("abc", "de"), {"", Reply::End::Reset});
  EXPECT_EQ(Search(driver, "1 4", "a").back(), NotFound("a"));
  EXPECT_EQ(ResultsOf(driver), (Results{"", "", "0"}));
}

TEST(WordSearch, AddsTheRowsOfEachRunAndLabelsTheLastOneWithHits) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  EXPECT_EQ(Search(driver, "0 1 2 4", "orchestra"),
            (Lines{Shown("SearchWin"), Shown("SearchWin"), Shown("SearchWin"), NotFound("orchestra"),
                   NotFound("orchestra")}));
  const std::string rows = kFirst + "," + kThird + "," + kGerman;
  // The Russian track has no hit, and the empty one is not searched.
  EXPECT_EQ(ResultsOf(driver), (Results{"[" + rows + "]", Displaying("1", "orchestra"), "0"}));
  EXPECT_EQ(Search(driver, "0", "BEGINS"), Lines{Shown("SearchWin")});
  EXPECT_EQ(ResultsOf(driver), (Results{"[" + rows + "," + kFirst + "]", Displaying("1", "BEGINS"), "1"}));
  EXPECT_EQ(Search(driver, "4", "x"), Lines{NotFound("x")});
  EXPECT_EQ(ResultsOf(driver)[2], "1");
  EXPECT_EQ(Search(driver, "5", "x"), Lines{NotFound("x")});
  EXPECT_EQ(ResultsOf(driver)[2], "0");
  EXPECT_EQ(driver.Run("click SearchWin.closeBtn"), Lines{Closed("SearchWin")});
  EXPECT_EQ(Search(driver, "1", "und"), kTwice);
  EXPECT_EQ(ResultsOf(driver), (Results{"[" + kGerman + "]", Displaying("1", "und"), "1"}));
}

TEST(WordSearch, AsksForTheLinkThenTheTracksThenALanguage) {
  SessionDriver driver;
  Offer(driver.server, "abc", kTracks);
  EXPECT_EQ(driver.Run("open\nclick PushButton3"), (Lines{Shown("Window1"), kNoLink, kLinkFocused}));
  EXPECT_EQ(driver.Run("type TextField1 ?v=abc\nclick PushButton3"),
            Lines{Message("There are no selected languages to retrieve.")});
  EXPECT_EQ(driver.Run("click PushButton2\nclick PushButton3"),
            Lines{Message("You must choose a language to do a word search on.")});
  EXPECT_EQ(driver.server.Requests().size(), 1u);
}

TEST(WordSearch, AnInvalidExpressionIsReportedOnceAndFetchesNothing) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  for (const auto& [term, why] : {std::pair<std::string, std::string>{"(", "2, missing closing parenthesis"},
                                  {"Москва)", "7, unmatched closing parenthesis"},
                                  {"[z-a]", "4, range out of order in character class"}})
    EXPECT_EQ(Search(driver, "0 1 2", term),
              Lines{Term(term, "is not a valid search expression: at character " + why)});
  EXPECT_EQ(driver.server.Requests().size(), 1u);
  EXPECT_EQ(ResultsOf(driver), (Results{"", "", "0"}));
  EXPECT_EQ(Search(driver, "0", "begins"), kTwice);
}

TEST(WordSearch, ARunawayTermLosesTheRowsThatItHasShown) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  const std::string runaway = "(a+)+$";
  const std::string message = Term(runaway, "could not be searched for: it would take too long to match");
  EXPECT_EQ(Search(driver, "3 4", runaway), (Lines{Shown("SearchWin"), Closed("SearchWin"), message}));
  Search(driver, "1", "und");
  EXPECT_EQ(Search(driver, "3 4", runaway), Lines{message});
  EXPECT_EQ(ResultsOf(driver), (Results{"[" + kGerman + "]", Displaying("1", "und"), "1"}));
}

TEST(Results, AClickedCellOpensTheVideoAtItsSecond) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  Search(driver, "0 1", "orch");
  const std::string page = "https://www.youtube.com/watch?v=abc&t=";
  EXPECT_EQ(driver.Run("activate Window1\ncell 0 0\ncell 0 1\ncell 1 1\ncell 2 0\ncell 3 0"),
            (Lines{Browsed(page + "62"), Browsed(page + "62"), Browsed(page + "59"), Browsed(page + "3723"),
                   Browsed(page + "0")}));
  const auto state = driver.State();
  EXPECT_EQ(state["active"], "SearchWin");
  EXPECT_EQ(state["windows"]["SearchWin"]["controls"]["resultsList"]["selected"].dump(), "[3]");
  EXPECT_EQ(driver.Run("cell 5 0\ncell 0 2\ncell 0\ncell 0 -1"),
            (Lines{Refused(1, "resultsList has no row 5"), Refused(2, "there is no column 2"),
                   Refused(3, "cell takes a row and a column"), Refused(4, "there is no column -1")}));
  // The video is that of the last Search, not that of the rows.
  driver.Run("type TextField1 ?v=other&x=1\nclick PushButton2");
  EXPECT_EQ(driver.Run("cell 1 0"), Lines{Browsed("https://www.youtube.com/watch?v=other&x=1&t=59")});
}

TEST(Results, AreSavedAsALineForEachRow) {
  SessionDriver driver;
  const std::string text = "a  b   c    d<<p>p>e<P>f <p> g <pp>";
  driver.OpenWith({{"en", "English", Document({{"62.5", "1", text}, {"880.12", "1", "two"}})}}, "0");
  driver.Run("type searchField .\nclick PushButton3");
  SearchWin::Get().resultsList.SetCell(1, 0, "00:14:40,120");
  const std::string path = driver.folder / "out";
  EXPECT_EQ(driver.Run("type searchField it's <p>  new\nsave " + path + "\nclick SearchWin.saveBtn"),
            (Lines{Saved("TEXT", "search_results.txt", path), Launched(path)}));
  EXPECT_EQ(
      ReadFile(path),
      "Search results for the term 'it's <p>  new' in the video: https://www.youtube.com/watch?v=abc\n\n"
      "[00:01:02.500]\ta b  c  d<p>ef  g <pp>\n\n[00:14:40.120]\ttwo\n\n\n");
  EXPECT_EQ(ResultsOf(driver)[0], R"([["00:01:02.500",")" + text + R"("],["00:14:40.120","two"]])");

  const std::string before = driver.Run("dump").at(0);
  EXPECT_EQ(driver.Run("cancel\nclick SearchWin.saveBtn"), Lines{Saved("TEXT", "search_results.txt", "")});
  EXPECT_EQ(driver.Run("save /dev/full\nclick SearchWin.saveBtn"),
            (Lines{Saved("TEXT", "search_results.txt", "/dev/full"),
                   Message("\"full\" could not be saved: No space left on device.")}));
  EXPECT_EQ(driver.Run("dump").at(0), before);
}

TEST(Results, AreSavedWithTheTermOfTheLastRunIfNoFormIsOpen) {
  SessionDriver driver;
  driver.OpenWith(kTracks, "");
  Search(driver, "0", "begins");
  Search(driver, "0", "it's gone");
  const std::string path = driver.folder / "out";
  driver.Run("type searchField (\nclick PushButton3\nclose Window1\nsave " + path +
             "\nclick SearchWin.saveBtn");
  EXPECT_EQ(ReadFile(path),
            "Search results for the term 'it's gone' in the video: https://www.youtube.com/watch?v=abc\n\n"
            "[00:01:02.500]\tthe orchestra begins\n\n\n");
}
