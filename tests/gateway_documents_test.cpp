// From the bytes of a caption file to the cues that the program reads in its document.

#include "gateway/documents/convert.h"

#include <gtest/gtest.h>

#include "runtime/Text.h"
#include "support/captions.h"
#include "timedtext/TimedText.h"

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

gateway::Conversion Convert(const std::string& ending, std::string bytes,
                            const std::string& language = "en") {
  return gateway::ToDocument(std::move(bytes), *gateway::FormatWithEnding(ending), {language, false});
}

// What the program reads in a document: "start+dur words" of each cue.
Lines ReadBack(const std::string& document) {
  TimedTextFields fields = NormaliseTimedText(document);
  const TimedText track(std::make_shared<const std::string>(std::move(fields.document)),
                        std::move(fields.ends));
  EXPECT_EQ(track.Starts(), track.Cues());
  Lines lines;
  for (std::size_t i = 0; i < track.Cues(); ++i)
    lines.push_back(std::string(track.Times(i).start) + "+" + std::string(track.Times(i).dur) + " " +
                    TextOf(track.Text(i)));
  return lines;
}

Lines CuesOf(const std::string& ending, std::string bytes, const std::string& language = "en") {
  const auto conversion = Convert(ending, std::move(bytes), language);
  return conversion.fault.empty() ? ReadBack(conversion.document) : Lines{conversion.fault};
}

std::string Srv1(const std::string& cues) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript>" + cues + "</transcript>";
}

}  // namespace

TEST(Documents, AreWrittenToTheByte) {
  const auto conversion = Convert("vtt",
                                  "WEBVTT\n\n00:01.5 --> 00:03.25\nIt's \"so\": R&amp;D\n&gt;&gt; Bob\n\n"
                                  "1:00:00.000 --> 1:00:00.000\n|||\n");
  EXPECT_EQ(conversion.document,
            Document({{"1.500", "1.750", "It&amp;#39;s &amp;quot;so&amp;quot;: R&D\n>> Bob"},
                      {"3600.000", "0.000", "|||"}}));
}

TEST(Documents, CarryWhatTheProgramTakesForMarks) {
  const std::pair<std::string, std::string> rows[] = {
      {"a ||| b", "a ||| b"},
      {"||| |||", "||| |||"},
      {"a |||", "a |||"},
      {R"(a"> b" dur="c)", R"(a"> b" dur="c)"},
      {R"(<text start="1" dur="2">)", R"(<text start="1" dur="2">)"},
      {R"(/\r/\r/n/ /\n/\n/ /\/\r/n/)", R"(/\r/\r/n/ /\n/\n/ /\/\r/n/)"},
      {"</transcript></transcript><transcript>", "</transcript></transcript><transcript>"},
      {"</<text start=\"transcript>", "</<text start=\"transcript>"},
      {"</text> </</text>text>", "< /text> </< /text>text>"},
      {"&amp;#39; &amp;quot; &amp;amp;#39;", "&#39; &quot; &amp;amp;#39;"},
      {R"(<?xml version="1.0" encoding="utf-8" ?>)", R"(<?xml version="1.0" encoding="utf-8" ?>)"},
  };
  for (const auto& [words, shown] : rows) {
    std::string escaped = ReplaceAll(words, "&", "&amp;");
    escaped = ReplaceAll(ReplaceAll(escaped, "<", "&lt;"), ">", "&gt;");
    const std::string vtt =
        "WEBVTT\n\n00:01.000 --> 00:02.000\n" + escaped + "\n\n00:03.000 --> 00:04.000\nnext\n";
    EXPECT_EQ(CuesOf("vtt", vtt), (Lines{"1.000+1.000 " + shown, "3.000+1.000 next"})) << words;
  }
}

TEST(Documents, AreMadeOfEachFormat) {
  const Lines cues = {"0.500+1.250 It's R&D", "2.000+1.000 >> \"so\" < two lines"};
  EXPECT_EQ(
      CuesOf("srv1", Srv1("<text start=\"0.5\" dur=\"1.25\">It&amp;#39;s R&amp;amp;D</text>\n"
                          "<text start=\"2\" dur=\"1\">&amp;gt;&amp;gt; \"so\" &lt; two\nlines</text>")),
      cues);
  EXPECT_EQ(CuesOf("vtt",
                   "WEBVTT - a file\nKind: captions\nLanguage: en\n\nNOTE --> nothing\n\n1\n"
                   "00:00.500 --> 00:01.750 align:start\n<v Bob>It&#39;s</v> R&amp;D\n\n"
                   "00:00:02.000 --> 00:00:03.000\n&gt;&gt; <i>\"so\"</i> &lt; two\nlines"),
            cues);
  EXPECT_EQ(CuesOf("srt",
                   "1\n00:00:00,500 --> 00:00:01,750\n<i>It's</i> R&D\n\n2\n0:0:2.0-->0:0:3,0\n"
                   "{\\an8}>> \"so\" < two\n\nlines\n"),
            cues);
}

TEST(Documents, AreNotMadeOfOtherFiles) {
  const std::pair<std::string, std::string> rows[] = {
      {"", "this file is empty"},
      {" \n", "this file is empty"},
      {"\xEF\xBB\xBF<!-- x -->\n<!DOCTYPE HTML><html>", "this file is a web page"},
      {"<transcript><text start=\"1\" dur=\"1\">a", "this file is damaged"},
      {"<transcript><text start=\"1\" dur=\"1\"> </text></transcript>", "this file holds no captions"},
      {"<timedtext/>", "this file is not in the srv1 format"},
      {"<!DOCTYPE t [<!ENTITY a \"b\">]><transcript/>", "this file declares entities"},
  };
  for (const auto& [bytes, fault] : rows) {
    const auto conversion = Convert("srv1", bytes);
    EXPECT_EQ(conversion.fault, fault);
    EXPECT_EQ(conversion.document, "");
  }
  EXPECT_EQ(Convert("vtt", "00:01.000 --> 00:02.000\na\n").fault, "this file is not in the vtt format");
  EXPECT_EQ(Convert("srt", "no times at all\n").fault, "this file holds no captions");
}
