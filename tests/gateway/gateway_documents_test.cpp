// From the bytes of a caption file to the cues that the program reads from the document.

#include "support/documents.h"

#include <gtest/gtest.h>

#include "support/captions.h"

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

std::string Srv1(const std::string& cues) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript>" + cues + "</transcript>";
}

}  // namespace

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

// One text in each format, with the oddities of real files.
TEST(Documents, OneTextGivesTheSameDocumentInEveryFormat) {
  const std::pair<std::string, std::string> files[] = {
      {"srv1",
       Srv1("<text start=\"0.5\" dur=\"1.25\">It&amp;#39;s R&amp;amp;D</text>\n<text start=\"1\" dur=\"1\"/>"
            "<text start=\"2\" dur=\"1\">&amp;gt;&amp;gt; \"so\" &lt; 3\n[Music]</text>"
            "<text start=\"4\">caf\u00E9 &quot;x&quot;</text><text start=\"5\" dur=\"3\">end</text>")},
      {"srv2",
       "<?xml version=\"1.0\" encoding=\"utf-8\"?><timedtext><window id=\"1\" op=\"define\"/>"
       "<text t=\"500\" d=\"1250\">It&#39;s R&amp;D</text><text w=\"1\" t=\"2000\" d=\"1000\" r=\"1\">"
       "&gt;&gt; \"so\" &lt; 3\n[Music]</text><text t=\"4000\">caf&#xE9; &quot;x&quot;</text>"
       "<text t=\"5000\" d=\"3000\">end</text></timedtext>"},
      {"srv3",
       "<?xml version=\"1.0\" encoding=\"utf-8\" ?><timedtext format=\"3\">\n<head><ws id=\"0\"/><pen id=\"1\"/>"
       "</head><body>\n<w t=\"0\" id=\"1\"/><p t=\"500\" d=\"1250\" w=\"1\"><s ac=\"0\">It&#39;s</s>"
       "<s t=\"300\" ac=\"0\"> R&amp;D</s></p>\n<p t=\"1740\" d=\"10\" w=\"1\" a=\"1\">\n</p>"
       "<p t=\"2000\" d=\"1000\" p=\"1\">&gt;&gt; \"so\" &lt; 3<br/>[Music]</p><p t=\"4000\">caf\u00E9 &quot;x&quot;</p>"
       "<p t=\"4500\" a=\"1\">\n</p><p t=\"5000\" d=\"3000\">end</p></body></timedtext>"},
      {"json3",
       R"({"wireMagic":"pb3","pens":[{"segs":[{"utf8":"no"}]}],"wsWinStyles":[{}],"events":[)"
       R"({"tStartMs":0,"dDurationMs":9000,"id":1,"wpWinPosId":1},)"
       R"({"tStartMs":500,"dDurationMs":1250,"wWinId":1,"segs":[{"utf8":"It's","acAsrConf":0},)"
       R"({"utf8":" R\u0026D","tOffsetMs":300}]},{"tStartMs":1740,"dDurationMs":10,"aAppend":1,"segs":[{"utf8":"\n"}]},)"
       R"({"tStartMs":2000,"dDurationMs":1000,"segs":[{"utf8":">> \"so\" < 3\n[Music]"}]},)"
       R"({"tStartMs":4000,"segs":[{"utf8":"caf\u00e9 \"x\""}]},{"tStartMs":5000,"dDurationMs":3e3,"segs":[{"utf8":"end"}]}]})"},
      {"ttml",
       "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<tt xml:lang=\"en\" xmlns=\"http://www.w3.org/ns/ttml\" xmlns:ttp=\"http://www.w3.org/ns/ttml#parameter\" ttp:frameRate=\"25\" ttp:tickRate=\"1000\">\n<head/>\n"
       "<body>\n<div>\n<p begin=\"00:00:00.500\" end=\"00:00:01.750\" style=\"s2\">It&#39;s\n  "
       "<span>R&amp;D</span></p>\n"
       "<p begin=\"00:00:02:00\" dur=\"25f\">&gt;&gt; \"so\" &lt; 3<br />[Music]</p></div>\n<div begin=\"3s\">"
       "<p><span begin=\"1000t\" end=\"2000ms\">caf\u00E9 &quot;x&quot;</span>\n<span begin=\"2s\" dur=\"0.05m\">end</span></p>"
       "</div></body></tt>"},
      {"vtt",
       "\xEF\xBB\xBFWEBVTT - a file\r\nKind: captions\r\nLanguage: en\r\n\r\nSTYLE\r\n::cue { color: red }\r\n\r\n"
       "NOTE a\r\nremark\r\n\r\n1\r\n00:00.500 --> 00:01.750 align:start position:0%\r\n"
       "<v.loud Bob>It&#39;s</v> <00:00:01.000><c> R&amp;D</c>\r\n \r\n\r\n"
       "00:00:02.000 --> 00:00:03.000\r\n&gt;&gt; <i>\"so\"</i> < 3\r\n[Music]\r\n"
       "0000:00:04.000 --> 00:00:05.000\r\ncaf\u00E9&nbsp;&quot;x&quot;\r\n\r\n00:05.000 --> 00:08.000\r\nend"},
      {"srt",
       "1\r\n00:00:00,500 --> 00:00:01,750\r\n<font color=\"#fff\">It's</font> R&D\r\n\r\n2\n0:0:2.0-->0:0:3,0 X1:1 X2:2\n"
       "{\\an8}>> \"so\" < 3\n\n[Music]\n3\n00:00:04,000 --> 00:00:05,000\ncaf\u00E9&#160;\"x\"\n\n\n"
       "00:00:05,000 --> 00:00:08,000\nend\n"},
  };
  const std::string document = Document({{"0.500", "1.250", "It&amp;#39;s R&D"},
                                         {"2.000", "1.000", ">> &amp;quot;so&amp;quot; < 3\n[Music]"},
                                         {"4.000", "1.000", "caf\u00E9 &amp;quot;x&amp;quot;"},
                                         {"5.000", "3.000", "end"}});
  EXPECT_EQ(std::size(files), gateway::CaptionFormats().size());
  for (const auto& [ending, bytes] : files) {
    const auto conversion = Convert(ending, bytes);
    EXPECT_EQ(conversion.document, document) << ending;
    EXPECT_EQ(conversion.fault, "") << ending;
  }
  EXPECT_EQ(gateway::FormatWithEnding("SRT")->ending, "srt");
  EXPECT_EQ(gateway::FormatWithEnding("srt3"), nullptr);
  EXPECT_EQ(gateway::FormatWithEnding(""), nullptr);
}

// Rare constructs of each format.
TEST(Documents, OddFilesKeepTheirWords) {
  const struct {
    std::string ending, bytes;
    Lines cues;
  } rows[] = {
      {"srv1",
       "<transcript><text dur=\".\" start=\"-1\">a < <@<[<`<{<1 b & c&nbsp;&bogus; &#0;</text></transcript>",
       {"0.000+3.000 a < <@<[<`<{<1 b & c &bogus;"}},
      {"srv1",
       "<transcript><text start='1.9999' dur='1'><![CDATA[a &lt; b]]><a>c</a> <z>d</z><A>e</A><Z>f</Z><_>g</_></text></transcript>",
       {"1.999+1.000 a < bc defg"}},
      {"srv1",
       Srv1("<text start=\".5\" dur=\"1\">&amp;amp;lt; &amp;#x1F600;</text>"),
       {"0.500+1.000 &lt; \U0001F600"}},
      // Without an end, the next start that is later counts, even of a cue without words.
      {"srv1",
       "<transcript><text dur=\"0.5\">a</text><text start=\"1\" dur=\"x\">b</text><text start=\"1\">c</text>"
       "<text start=\"3\" a=\"1\"> </text><text start=\"4\" dur=\"0\">d</text></transcript>",
       {"0.000+0.500 a", "1.000+2.000 b", "1.000+2.000 c", "4.000+0.000 d"}},
      {"srv2",
       "<timedtext><text t=\"1000\">a</text><text t=\"2000\" a=\"1\"> </text><text t=\"-3\" d=\"9\">b</text></timedtext>",
       {"0.000+0.009 b", "1.000+1.000 a"}},
      {"srv3",
       "<timedtext format=\"3\"><body><p t=\"9\"><s>a</s><s> </s><s>b</s></p><p t=\"5\" d=\"1\" a=\"1\">c</p>"
       "</body></timedtext>",
       {"0.005+0.001 c", "0.009+3.000 a b"}},
      {"json3",
       R"({"events":[{"segs":[{"utf8":"a"},{"utf8":["no"]}],"x":{"segs":[{"utf8":"no"}]},"tStartMs":1},)"
       R"({"tStartMs":7},{"tStartMs":9.9,"dDurationMs":1,"aAppend":1,"segs":[{"utf8":"b"}]}]})",
       {"0.001+0.006 a", "0.009+0.001 b"}},
      {"ttml",
       "<tt:tt xmlns:tt=\"x\" a:frameRate=\"30\" a:frameRateMultiplier=\"1000 1001\"><tt:body begin=\"1s\"><tt:p begin=\"30f\" end=\"00:00:09\" dur=\"1h\">a</tt:p><tt:p dur=\"1.5\">b</tt:p></tt:body></tt:tt>",
       {"1.000+1.500 b", "2.001+7.999 a"}},
      {"ttml",
       "<tt frameRate=\"25\" tickRate=\"1000\"><body><p begin=\"0.5h\" end=\"31m\">h</p><p begin=\"90s\" dur=\"250ms\">s</p><p begin=\"125000f\" dur=\"3500t\">f</p><p begin=\"00:00:01:10\" end=\"3\">c</p><p begin=\"2000\" dur=\"5x\">x</p><p begin=\"3000\" dur=\"\">e</p></body></tt>",
       {"1.400+1.600 c", "90.000+0.250 s", "1800.000+60.000 h", "2000.000+1000.000 x", "3000.000+2000.000 e",
        "5000.000+3.500 f"}},
      {"ttml",
       "<tt><body><p begin=\"1s\"><span begin=\"2s\" end=\"3s\">a</span></p><p end=\"9s\">"
       "<span begin=\"4s\">b</span></p><p><span begin=\"5s\" end=\"6s\">c</span></p></body></tt>",
       {"0.000+9.000 b", "1.000+4.000 a", "5.000+1.000 c"}},
      // By default 30 frames and one tick per second; with a frame rate, as many ticks as frames.
      {"ttml", "<tt><body><p begin=\"30000f\" dur=\"2t\">a</p></body></tt>", {"1000.000+2.000 a"}},
      {"ttml",
       "<tt frameRate=\"50\" frameRateMultiplier=\"0 5\"><body><p begin=\"5t\" dur=\"0.1\">a</p></body></tt>",
       {"0.100+0.100 a"}},
      {"ttml",
       "<tt frameRate=\"0\" frameRateMultiplier=\"1 2\" tickRate=\"1\"><body><p begin=\"00:00:01:\" dur=\"0s\">a</p>"
       "<div begin=\"30f\"><p>b <span>c</span></p></div><p begin=\"9s\" dur=\"2t\" end=\"12s\">d</p></body></tt>",
       {"1.000+0.000 a", "2.000+7.000 b c", "9.000+2.000 d"}},
      // A browser drops any tag; "<" before a blank or a digit is text. A time line ends a cue too.
      {"vtt",
       "WEBVTT\n\n1:01:01.001 --> 1:01:02.000\n<x>I</x> <3 a<b\n\n0:1.0 --> 0:0.5\n&lt;i&gt; a --> b\n0:9 --x 0:9\n0:2.0-->0:3.0\n<b",
       {"1.000+0.000 <i> a --> b 0:9 --x 0:9", "2.000+1.000 <b", "3661.001+0.999 I <3 a<b"}},
      {"vtt",
       "WEBVTT\n\n0:1 --> 0:2\n<A>a<Z>b</a>c</z>d<@>e<[>f<`>g<{>h<.x>i</>j<>k <b<i>l <0:1x>{\\i} &apos;&lrm;&rlm;&#X41;&#32;&#x0010FFFF;"
       "\n\n0:2 --> 0:3\n&#31;&#xD800;&#x110000;&#x00010FFFF;&#;&#x4G;&amp",
       {"1.000+1.000 abcd<@>e<[>f<`>g<{>hijk <bl <0:1x>{\\i} '\u200E\u200FA \U0010FFFF",
        "2.000+1.000 &#31;&#xD800;&#x110000;&#x00010FFFF;&#;&#x4G;&amp"}},
      {"vtt",
       "WEBVTT\n\n00:61:61.000 --> 99999999999:00:00.000\na\0b\n"s,
       {"3721.000+999996278.999 a\xEF\xBF\xBD"
        "b"}},
      {"srt",
       "7\n00:00:01,5 --> 00:00:02,50\n42\n\n8\n00:00:02,000 --> 00:00:03,000\n<sighs> &amp;lt; &eacute; &#1; {x}\n",
       {"1.500+1.000 42", "2.000+1.000 <sighs> &lt; &eacute; &#1; {x}"}},
      {"srt",
       " 7 \n0:1 --> 0:2\n<b><c><em><font><i><rt><ruby><s><strong><u>a</U></STRONG></Z><strongs> {\\b1}b{\\c {\\d}\n"
       " 9\t\n 0:2 --> 0:3\n&lt;&gt;&quot;\n0:3 --> 0:4\n10\n0:4 --> 0:5\nd\n",
       {"1.000+1.000 a</Z><strongs> b{\\c", "2.000+1.000 <>&quot;", "4.000+1.000 d"}},
      {"srt",
       "00:00:01,000 --> 00:00:02,000\n00:00:02,000 --> 00:00:03,000\na<br>b\r\r<I>c",
       {"2.000+1.000 a b c"}},
  };
  for (const auto& [ending, bytes, cues] : rows) EXPECT_EQ(CuesOf(ending, bytes), cues) << bytes;
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

TEST(Documents, AFileWithoutCaptionsGivesItsFault) {
  const auto nested = [](std::size_t depth) {
    return "<tt><body>" + ReplaceAll(std::string(depth, '<'), "<", "<div>") +
           ReplaceAll(std::string(depth, '<'), "<", "</div>") + "</body></tt>";
  };
  const std::string rows[][3] = {
      {"srv1", "", "empty"},
      {"vtt", "\xEF\xBB\xBF \r\n", "empty"},
      {"srv1", "\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- x -->\n<!DOCTYPE HTML><html>", "a web page"},
      {"json3", "<html><body>Before you continue", "a web page"},
      {"srt", "\n<HEAD>", "a web page"},
      {"vtt", "<!-- x --><?x?><body>", "a web page"},
      {"srv3", "<Title>", "a web page"},
      {"ttml", "<script>", "a web page"},
      {"srt", "<META a>", "a web page"},
      {"srv1", "<!--", "damaged"},
      {"srv1", "<transcript><text start=\"1\" dur=\"1\">a", "damaged"},
      {"json3", "{\"events\":[{\"segs\":[{\"utf8\":\"a", "damaged"},
      {"srv1", "<timedtext/>", "not in the srv1 format"},
      {"srv2", "<timedtext><body/></timedtext>", "not in the srv2 format"},
      {"srv3", "<timedtext/>", "not in the srv3 format"},
      {"json3", "{\"error\":{\"code\":429}}", "not in the json3 format"},
      {"ttml", "<smil/>", "not in the ttml format"},
      {"vtt", "00:01.000 --> 00:02.000\na\n", "not in the vtt format"},
      {"vtt", "WEBVTTx\n\n00:01.000 --> 00:02.000\na\n", "not in the vtt format"},
      {"ttml", nested(101), "nested too deeply"},
  };
  for (const auto& [ending, bytes, fault] : rows) {
    const auto conversion = Convert(ending, bytes);
    EXPECT_EQ(conversion.fault, "this file is " + fault) << bytes;
    EXPECT_EQ(conversion.document, "");
  }
  for (const auto& [ending, bytes] :
       {std::pair<const char*, std::string>("srv1",
                                            "<transcript><text start=\"1\" dur=\"1\"> </text></transcript>"),
        {"json3", "{\"events\":[{\"tStartMs\":1}]}"},
        {"ttml", nested(100)},
        {"srt", "0:0:1 --> 0:0:2x\na\n0:0:1. --> 0:0:2\na\n"},
        {"srt", "no times at all\n00:01 -> 00:02\n"}})
    EXPECT_EQ(Convert(ending, bytes).fault, "this file holds no captions") << bytes;
  EXPECT_EQ(Convert("srv1", "<!DOCTYPE t [<!ENTITY a \"b\">]><transcript/>").fault,
            "this file declares entities");
}
