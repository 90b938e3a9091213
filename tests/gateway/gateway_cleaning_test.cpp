// How the cues of caption files are cleaned, which files keep their cues, and which are too large.

#include <gtest/gtest.h>

#include "support/documents.h"

namespace {

using Lines = std::vector<std::string>;

std::string Vtt(const std::string& cues) { return "WEBVTT\nKind: captions\nLanguage: en\n\n" + cues; }
// A cue with these times, in seconds.
std::string At(const std::string& start, const std::string& end, const std::string& words) {
  return "00:00:" + start + " --> 00:00:" + end + " align:start position:0%\n" + words + "\n\n";
}

const Lines kUnrolled = {"1.000+2.010 so here we are", "3.010+2.000 so here we are", "5.010+1.510 at last",
                         "7.000+1.010 [Music]", "9.000+1.000 at last"};

// As the site writes rolling captions: each line as it is spoken, held, and above the next one.
const std::string kRolling = Vtt(
    At("01.000", "03.000", " \nso<00:00:01.500><c> here</c><00:00:02.000><c> we are</c>") +
    At("03.000", "03.010", "so here we are\n ") +
    At("03.010", "05.000", "so here we are\nso<00:00:03.500><c> here</c><00:00:04.000><c> we are</c>") +
    At("05.000", "05.010", "so here we are\n ") +
    At("05.010", "06.510", "so here we are\nat<00:00:05.500><c> last</c>") +
    At("06.510", "06.520", "at last\n ") + At("07.000", "08.000", "at last\n[Music]") +
    At("08.000", "08.010", "[Music]\n ") + At("09.000", "10.000", "[Music]\nat<00:00:09.500><c> last</c>"));

}  // namespace

TEST(Cleaning, RollingLinesAppearOnce) {
  EXPECT_EQ(CuesOf("vtt", kRolling), kUnrolled);
  // The same as an SRT file made by a converter.
  std::string srt = ReplaceAll(kRolling, " align:start position:0%", "");
  for (const char* time : {"01.500", "02.000", "03.500", "04.000", "05.500", "09.500"})
    srt = ReplaceAll(srt, "<00:00:" + std::string(time) + "><c>", "");
  EXPECT_EQ(CuesOf("srt", ReplaceAll(srt, "</c>", "")), kUnrolled);
  // Long holds: without word times, while the previous line has some. Overlaps of an unrolled file are cut.
  const std::string longHolds =
      Vtt(At("01.000", "02.000", "a<00:00:01.500><c> b</c>") + At("02.000", "03.000", "a b") +
          At("03.000", "04.500", "a b\nc<00:00:03.500><c> d</c>") + At("04.450", "06.000", "c d"));
  EXPECT_EQ(CuesOf("vtt", longHolds), (Lines{"1.000+2.000 a b", "3.000+3.000 c d"}));
  // The longest run counts if several lines have the same words.
  EXPECT_EQ(
      CuesOf("vtt", longHolds + At("06.000", "07.000", "c d\nx\nx\nx") + At("07.000", "08.000", "x\nx\ny") +
                        At("08.000", "09.000", "x\nz")),
      (Lines{"1.000+2.000 a b", "3.000+3.000 c d", "6.000+1.000 x x x", "7.000+1.000 y", "8.000+1.000 x z"}));
  EXPECT_EQ(CuesOf("vtt", longHolds + At("07.000", "08.000", "x\nz") + At("07.000", "08.000", "x\nz\nx") +
                              At("07.000", "08.000", "x\nz\nx\nx")),
            (Lines{"1.000+2.000 a b", "3.000+3.000 c d", "7.000+1.000 x z", "7.000+1.000 x"}));
  // Holds that start 50 ms before or after the end, and that last 50 ms.
  EXPECT_EQ(CuesOf("vtt", Vtt(At("01.000", "02.000", "a") + At("01.950", "02.000", "a") +
                              At("03.000", "04.000", "b") + At("04.050", "04.100", "b"))),
            (Lines{"1.000+1.000 a", "3.000+1.100 b"}));
  const std::string overlapping = longHolds + At("05.000", "07.000", "c d\ne");
  EXPECT_EQ(CuesOf("vtt", overlapping).at(1), "3.000+2.000 c d");
}

TEST(Cleaning, RepeatedLinesOfAFileThatDoesNotRollStay) {
  const std::pair<std::string, Lines> rows[] = {
      // A refrain: the same line again, as long as the first time.
      {At("01.000", "02.000", "la la") + At("02.000", "03.000", "la la") + At("03.000", "04.000", "la la"),
       {"1.000+1.000 la la", "2.000+1.000 la la", "3.000+1.000 la la"}},
      // The whole line twice, with and without tags.
      {At("01.000", "02.000", "<i>a</i>") + At("02.000", "03.000", "a") + At("03.000", "04.000", "<i>b</i>") +
           At("04.000", "05.000", "b"),
       {"1.000+1.000 a", "2.000+1.000 a", "3.000+1.000 b", "4.000+1.000 b"}},
      // Karaoke: the same line with the next word marked.
      {At("01.000", "02.000", "<00:00:01.100>a b") + At("02.000", "03.000", "a <00:00:02.100>b") +
           At("03.000", "04.000", "a<00:00:03.100> b"),
       {"1.000+1.000 a b", "2.000+1.000 a b", "3.000+1.000 a b"}},
      // A single hold may be a coincidence.
      {At("01.000", "02.000", "a") + At("02.000", "02.010", "a"), {"1.000+1.000 a", "2.000+0.010 a"}},
      // Not within 50 ms of the previous end, longer than 50 ms, or not a whole line of the previous cue.
      {At("01.000", "02.000", "a") + At("02.051", "02.061", "a") + At("02.112", "02.122", "a") +
           At("03.000", "04.000", "a\nb"),
       {"1.000+1.000 a", "2.051+0.010 a", "2.112+0.010 a", "3.000+1.000 a b"}},
      {At("01.000", "02.000", "a") + At("01.949", "01.959", "a") + At("03.000", "04.000", "b") +
           At("03.949", "03.959", "b"),
       {"1.000+1.000 a", "1.949+0.010 a", "3.000+1.000 b", "3.949+0.010 b"}},
      {At("01.000", "02.000", "a") + At("02.000", "02.051", "a") + At("02.051", "02.102", "a"),
       {"1.000+1.000 a", "2.000+0.051 a", "2.051+0.051 a"}},
      {At("01.000", "02.000", "a") + At("02.000", "02.010", "x") + At("02.010", "02.020", "y") +
           At("03.000", "04.000", "b") + At("04.000", "05.000", "b\nc"),
       {"1.000+1.000 a", "2.000+0.010 x", "2.010+0.010 y", "3.000+1.000 b", "4.000+1.000 b c"}},
      {At("01.000", "02.000", "aab") + At("02.000", "02.010", "ab") + At("02.010", "02.020", "b") +
           At("02.020", "03.000", "b\nc"),
       {"1.000+1.000 aab", "2.000+0.010 ab", "2.010+0.010 b", "2.020+0.980 b c"}},
  };
  for (const auto& [cues, lines] : rows) EXPECT_EQ(CuesOf("vtt", Vtt(cues)), lines);
  std::string rare = At("01.000", "02.000", "a") + At("02.000", "02.010", "a") + At("02.010", "02.020", "a");
  for (int i = 10; i < 18; ++i) rare += At(std::to_string(i) + ".000", std::to_string(i) + ".500", "z");
  EXPECT_EQ(CuesOf("vtt", Vtt(rare)).size(), 11u);
  EXPECT_EQ(CuesOf("vtt", Vtt(rare.substr(0, rare.rfind("00:00:17.000")))).size(), 8u);  // two of ten
}

TEST(Cleaning, OnlyOverlapsOfAutomaticTracksAreCut) {
  const std::string file =
      Vtt(At("01.000", "09.000", "a") + At("01.000", "04.000", "b") + At("03.000", "05.000", "c") +
          At("05.000", "09.000", "d") + At("07.000", "08.000", " "));
  const Lines kept = {"1.000+8.000 a", "1.000+3.000 b", "3.000+2.000 c", "5.000+4.000 d"};
  const Lines cut = {"1.000+2.000 a", "1.000+2.000 b", "3.000+2.000 c", "5.000+4.000 d"};
  EXPECT_EQ(CuesOf("vtt", file, {"en", false}), kept);
  EXPECT_EQ(CuesOf("vtt", file, {"original", false}), kept);
  EXPECT_EQ(CuesOf("vtt", file, {"en", true}), cut);
  EXPECT_EQ(CuesOf("vtt", file, {"en-orig", false}), cut);
}

TEST(Cleaning, CuesAreSortedAndThoseWithTheSameStartAndWordsDropped) {
  EXPECT_EQ(CuesOf("vtt", Vtt(At("05.000", "06.000", "late") + At("01.000", "02.000", "a") +
                              At("01.000", "02.500", "<b>a</b> ") + At("01.000", "02.000", "b") +
                              At("01.000", "02.000", "a") + At("02.000", "03.000", "a") +
                              At("03.000", "04.000", " "))),
            (Lines{"1.000+1.000 a", "1.000+1.000 b", "1.000+1.000 a", "2.000+1.000 a", "5.000+1.000 late"}));
}

TEST(Cleaning, BlanksAndInvisibleCharactersAreTidied) {
  const std::string zeroWidth = "\u200B";
  const std::string words =
      " \u00A0\u200B a\u00A0\t \u202F"
      "b\uFEFF \n\u200B\n\x01"
      "c\u200Bd\x7F"
      "e \u200B ";
  EXPECT_EQ(CuesOf("vtt", Vtt(At("01.000", "02.000", words))), (Lines{"1.000+1.000 a b cd e"}));
  const std::string khmer = Vtt(At("01.000", "02.000", words + "\n\u200B f \u200B g"));
  for (const char* language : {"km", "th-TH", "LO", "my_MM-orig"})
    EXPECT_EQ(CuesOf("vtt", khmer, {language}), (Lines{"1.000+1.000 a b c\u200Bd e f \u200B g"})) << language;
  EXPECT_EQ(CuesOf("vtt", khmer, {"kmb"}), (Lines{"1.000+1.000 a b cd e f g"}));
}

TEST(Documents, AFileOverALimitIsTooLarge) {
  const auto srtOf = [](std::size_t cues) {
    return ReplaceAll(std::string(cues, '\n'), "\n", "0:0-->0:0\na\n");
  };
  EXPECT_EQ(Convert("srt", srtOf(1'500'000)).fault, "");
  EXPECT_EQ(Convert("srt", srtOf(1'500'001)).fault, "this file is too large");
  // Text of 64 MiB, plain and in another encoding, where one byte gives three.
  const std::string plain(64u << 20, 'x'), currency = std::string((64u << 20) / 3, '\x80') + "x";
  for (const std::string& text : {plain, currency}) {
    EXPECT_EQ(Convert("srt", text).fault, "this file holds no captions");
    EXPECT_EQ(Convert("srt", text + "x").fault, "this file is too large");
  }
  // A document of 96 MiB before its last tag; each quotation mark takes ten bytes.
  const auto vtt = [](const std::string& words) { return Convert("vtt", "WEBVTT\n\n0:0-->0:0\n" + words); };
  const std::size_t room = (96u << 20) + std::string("</transcript>x").size() - vtt("x").document.size();
  const std::string words = std::string(room / 10, '"') + std::string(room % 10, 'x');
  EXPECT_EQ(vtt(words).document.size(), (96u << 20) + std::string("</transcript>").size());
  EXPECT_EQ(vtt(words + "x").fault, "this file is too large");
  EXPECT_EQ(Convert("srv1", "<transcript>" + std::string(17u << 20, '<')).fault, "this file is too large");
  // Each part has eight nodes of 64 bytes and two attributes of 40; the rest is filled with single nodes.
  const std::string part = "<a b='' c=''>t<d/>u</a>v<e>w</e><f></f>x<g/>";
  constexpr std::size_t kLimit = (128u << 20) - 64, kParts = 100'000, kRest = (kLimit - kParts * 592) / 64;
  const auto tree = [&](std::size_t nodes) {
    return "<transcript>" + ReplaceAll(std::string(kParts, 'x'), "x", part) +
           ReplaceAll(std::string(nodes, 'x'), "x", "<h/>") + "</transcript>";
  };
  EXPECT_EQ(Convert("srv1", tree(kRest)).fault, "this file holds no captions");
  EXPECT_EQ(Convert("srv1", tree(kRest + 1)).fault, "this file is too large");
}
