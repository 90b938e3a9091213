// From the bytes of a caption file to the cues that the program reads from the document.

#include "support/documents.h"

#include <gtest/gtest.h>

#include "support/captions.h"
#include "support/recorded.h"

using namespace std::string_literals;
using Lines = std::vector<std::string>;

// The format, bytes and cues of each caption file of documents.txt.
static Lines CaptionFiles() {
  Lines files = PartsOf("gateway/documents.txt", "\n\n== ");
  const std::pair<std::string, std::string> marks[] = {
      {"[CR]", "\r"},      {"[NUL]", "\0"s},    {"[TAB]", "\t"},     {"[SP]", " "},
      {"[BOM]", "\uFEFF"}, {"[LRM]", "\u200E"}, {"[RLM]", "\u200F"}, {"[U+10FFFF]", "\U0010FFFF"},
  };
  for (std::string& file : files) {
    for (const auto& [mark, bytes] : marks) file = ReplaceAll(file, mark, bytes);
  }
  files.erase(files.begin());
  return files;
}

TEST(Documents, ADocumentHasExactlyTheseBytes) {
  const auto conversion = Convert("vtt",
                                  "WEBVTT\n\n00:01.5 --> 00:03.25\nIt's \"so\": R&amp;D\n&gt;&gt; Bob\n\n"
                                  "1:00:00.000 --> 1:00:00.000\na || b\n|||\n");
  EXPECT_EQ(conversion.document,
            Document({{"1.500", "1.750", "It&amp;#39;s &amp;quot;so&amp;quot;: R&D\n>> Bob"},
                      {"3600.000", "0.000", "a || b\n|||"}}));
}

TEST(Documents, WordsThatLookLikeMarksReachTheProgram) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {"</text> </</text>text>", "< /text> </< /text>text>"},
      {"&amp;#39; &amp;quot; &amp;amp;#39;", "&#39; &quot; &amp;amp;#39;"},
  };
  for (const char* same : {"a ||| b", "||| |||", "a |||", R"(a"> b" dur="c)", R"(<text start="1" dur="2">)",
                           R"(/\r/\r/n/ /\n/\n/ /\/\r/n/)", "</transcript></transcript><transcript>",
                           "</<text start=\"transcript>", R"(<?xml version="1.0" encoding="utf-8" ?>)"})
    rows.emplace_back(same, same);
  for (const auto& [words, shown] : rows) {
    std::string escaped = ReplaceAll(words, "&", "&amp;");
    escaped = ReplaceAll(ReplaceAll(escaped, "<", "&lt;"), ">", "&gt;");
    EXPECT_EQ(CuesOf("vtt", "WEBVTT\n\n0:1 --> 0:2\n" + escaped + "\n\n0:3 --> 0:4\nnext\n"),
              (Lines{"1.000+1.000 " + shown, "3.000+1.000 next"}))
        << words;
  }
}

TEST(Documents, FilesOfEachFormatGiveTheseCuesOrAFault) {
  const Lines files = CaptionFiles();
  for (const std::string& file : files) {
    const std::string title = NthField(file, "\n", 1);
    const Lines parts = Split(file.substr(title.size() + 1), "\n->\n");
    const auto conversion = Convert(NthField(title, " ", 1), parts.at(0));
    const Lines cues = CuesIn(ReplaceAll(conversion.document, "\n", " / "));
    EXPECT_EQ(conversion.fault.empty() ? cues : Lines{conversion.fault}, Split(parts.at(1), "\n")) << file;
  }
}

TEST(Documents, TheEncodingOfAFileIsRecognised) {
  const auto srt = [](const std::string& words) {
    return "1\n00:00:01,000 --> 00:00:02,000\n" + words + "\n";
  };
  const auto wide = [](const std::string& text, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
  };
  const std::pair<std::string, std::string> rows[] = {
      {srt("caf\u00E9"), "caf\u00E9"},
      {"\xEF\xBB\xBF" + srt("caf\u00E9"), "caf\u00E9"},
      {srt("caf\xE9"), "caf\u00E9"},
      {wide(srt("caf\xE9"), false), "caf\u00E9"},
      {wide(srt("caf\xE9"), true), "caf\u00E9"},
      {"\xEF\xBB\xBF" + srt("a\xFF"), "a\uFFFD"},
      {srt("\x93so\x94 \x80"), "\u201Cso\u201D \u20AC"},
      // The marks of UTF-7 and UTF-1 are more likely to be words.
      {"+/v8-\n" + srt("a+AGE-"), "a+AGE-"},
      {"\xF7\x64L\n" + srt("caf\xE9"), "caf\u00E9"},
      {"\xE9\n" + srt("\xC3\xA9"), "\u00C3\u00A9"},
      {"<?xml encoding='koi8-r'?>\n" + srt("\xC4"), "\u00C4"},
  };
  for (const auto& [bytes, shown] : rows) EXPECT_EQ(CuesOf("srt", bytes), Lines{"1.000+1.000 " + shown});
  EXPECT_EQ(CuesOf("srv1", wide("<transcript><text start='1' dur='1'>a</text></transcript>", true)),
            Lines{"1.000+1.000 a"});
  const std::string declared = "<?xml version='1.0' encoding='koi8-r'?>";
  for (const auto& [ending, body] :
       {std::pair("srv2", "<timedtext><text t='1000' d='1000'>\xC4</text></timedtext>"),
        {"srv3", "<timedtext><body><p t='1000' d='1000'>\xC4</p></body></timedtext>"},
        {"ttml", "<tt><body><p begin='1' dur='1'>\xC4</p></body></tt>"}})
    EXPECT_EQ(CuesOf(ending, declared + body), Lines{"1.000+1.000 \u0434"}) << ending;
}

TEST(Documents, ADeclaredEncodingCountsUnlessItCannotBeTrue) {
  const auto words = [](const std::string& declaration, const std::string& bytes) {
    return CuesOf("srv1",
                  declaration + "<transcript><text start='1' dur='1'>" + bytes + "</text></transcript>");
  };
  const std::string spaces(379, ' '),
      rows[][3] = {
          {"<?xml version='1.0' encoding='koi8-r' ?>", "\xC4\xC1", "\u0434\u0430"},
          {"<?xml encoding = \"windows-1251\" standalone='yes'?>", "\xE4\xE0", "\u0434\u0430"},
          {"<?xml" + spaces + "encoding='koi8-r'?>", "\xC4", "\u00C4"},
          {"<?xml" + spaces.substr(1) + "encoding='koi8-r'?>", "\xC4", "\u0434"},
          {"<?xml encoding='koi8-r'?>", "\xC3\x84", "\u0446\u2514"},
      };
  for (const auto& [declaration, bytes, shown] : rows)
    EXPECT_EQ(words(declaration, bytes), Lines{"1.000+1.000 " + shown}) << declaration;
  for (const char* ignored :
       {"<?xml?><!-- encoding='koi8-r' -->", "<?xm encoding='koi8-r'?>", "<?xml encoding=koi8-r?>",
        "<?xml encoding='koi8-r?>", "<?xml encoding?>", "<?xml encoding='utf8'?>",
        "<?xml encoding='utf-16'?>", "<?xml encoding='utf-8'?>", "<?xml encoding='no such thing'?>",
        "<?xml encoding=''?>"})
    EXPECT_EQ(words(ignored, "\xC4"), Lines{"1.000+1.000 \u00C4"}) << ignored;
}

TEST(Documents, AFileNestedTooDeeplyIsRefused) {
  const auto fault = [](std::size_t depth) {
    const std::string one(depth, 'x');
    const std::string nested = ReplaceAll(one, "x", "<div>") + ReplaceAll(one, "x", "</div>");
    return Convert("ttml", "<tt><body>" + nested + "</body></tt>").fault;
  };
  EXPECT_EQ(fault(100), "this file holds no captions");
  EXPECT_EQ(fault(101), "this file is nested too deeply");
}
