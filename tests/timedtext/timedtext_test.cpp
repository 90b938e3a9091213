// From a track's document to a saved file, and the Download command around it.

#include "timedtext/TimedText.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/Program.h"
#include "support/cues.h"
#include "support/rows.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/normalise.h"

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

const std::vector<Cue> kTwo = {{"1.5", "2", "one"}, {"3", "0", "two"}};

}  // namespace

TEST(TimedText, NormalisingAppliesLiteralReplacementsInOrder) {
  const std::string declaration = R"(<?xml version="1.0" encoding="utf-8" ?>)";
  const std::pair<std::string, std::string> rows[] = {
      {Document({{"0.5", "3.2", "Hello"}, {"3.7", "2.1", "world"}}),
       "0.5 ||| 3.2 ||| Hello ||| 3.7 ||| 2.1 ||| world ||| "},
      {R"(a/\r/b/\n/c\r\n)", R"(abc\r\n)"},  // a backslash and a letter, no line end
      {"/\r/\n/", "/\r/\n/"},
      {"<transcript><transcript></transcript></transcript>", "<transcript></transcript>"},
      {declaration + declaration, declaration},
      {R"(<?xml version="1.0" encoding="utf-8"?>x)", R"(<?xml version="1.0" encoding="utf-8"?>x)"},
      {"It&amp;#39;s &amp;quot;so&amp;quot;", "It's \"so\""},
      {"&#39; &quot; &amp; &amp;amp; &lt; &amp;apos;", "&#39; &quot; &amp; &amp;amp; &lt; &amp;apos;"},
      {"&amp;quot;> &amp;quot; dur=&amp;quot;", "\"> \" dur=\""},  // decoded after the separators are in
      {"", ""},
  };
  for (const auto& [document, text] : rows) EXPECT_EQ(NormaliseTimedText(document).document, text);
  EXPECT_THROW(TimedText::From("a").Field(1), OutOfBoundsException);
  EXPECT_THROW(TimecodeList().At(0), OutOfBoundsException);
}

TEST(TimedText, EveryThreeFieldsAreACue) {
  const std::pair<std::string, Lines> rows[] = {
      {Document({}), {}},
      {"", {}},
      {"<html>no captions</html>", {}},
      {Document({{"1.5", "2", "It&amp;#39;s"}}), {"1.5+2 It's"}},
      {Document({{"1", "2", ""}, {"3", "4", "x"}}), {"1+2 ", "3+4 x"}},
      {Document({{"1", "2", "say &amp;quot;>&amp;quot; now"}, {"3", "4", "x"}}),
       {"1+2 say \">\" now", "3+4 x"}},
      {"<?xml version='1.0'?>" + Document({{"1", "2", "x"}}).substr(39), {"<?xml version='1.0'?>1+2 x"}},
      // Documents that break the pattern: fields shift, and the shorter list counts.
      {R"(<text start="1">a</text><text start="2" dur="9">b</text>)", {"1+a 2", "9+b ?"}},
      {Document({{"1", "2", "a ||| b"}, {"3", "4", "c"}}), {"1+2 a", "b+3 4", "c+ ?"}},
      {R"(<text start="1" dur="2">abc)", {"1+2 ?"}},
      {R"(<text start="1" dur="2)", {"1+2 ?"}},
  };
  for (const auto& [document, cues] : rows) EXPECT_EQ(CuesIn(document), cues) << document;
}

TEST(TimedText, LineEndsInACueBecomeBlanks) {
  for (const auto& row : Rows("a\nb~a b|a\r\nb~a b|a\rb~a b|a\n\nb\r~a  b |\n~ |  a  ~  a  |y\xFD\xFFz~y "
                              "z|\xFD~\xFD|\xFF\xFD~\xFF\xFD|\xE2\x80\xA8~\xE2\x80\xA8"))
    EXPECT_EQ(CleanCueText(row[0]), row[1]);
}

TEST(Writers, EachFormatIsSavedByteForByte) {
  Program program(
      {{"en", "English", Document({{"1.5", "2", "one"}, {"3661.129", "0", "&amp;quot;a&lt;\nb "}})},
       {"xx", "Nothing", Document({})},
       {"yy", "Wordless", Document({{"0", "1", ""}})}});
  program.Search({0, 1, 2});
  program.Click("openBox");
  program.host.onSaveDialog = [&] { program.host.calls.push_back(program.app.CommandStep()); };
  const std::string
      starts = "1\n00:00:01,500 --> 00:00:03,500\none\n\n2\n01:01:01,130 --> 01:01:01,130\n\"a&lt; b \n\n",
      wordless = "1\n00:00:00,000 --> 00:00:01,000\n\n\n", head = "WEBVTT\n\n";
  const auto dotted = [](const std::string& cues) { return ReplaceAll(cues, ",", "."); };
  const std::string rows[][6] = {
      {"TextBox lineBox", "text/plain", ".txt", "one\n\"a&lt; b \n", "", "\n"},
      {"timecodeBox", "text/plain", ".txt", "[00:00:01.50]\tone\n[01:01:01.13]\t\"a&lt; b \n", "",
       "[00:00:00.00]\t\n"},
      {"paragraphBox", "text/plain", ".txt", "one \"a&lt; b  ", "", " "},
      {"SRTBox", "", ".srt", starts, "", wordless},
      {"WebVTTBox", "", ".vtt", head + dotted(starts), head, head + dotted(wordless)},
  };
  for (const auto& [clicks, filter, extension, first, second, third] : rows) {
    program.Click(clicks);
    const Lines paths = {program.WillSave("a"), program.WillSave("b"), program.WillSave("c")};
    program.Click("PushButton1");
    const std::string save = "save: " + filter + " ";
    EXPECT_EQ(program.Calls(),
              (Lines{save + "English" + extension, "English, 1 of 3", save + "Nothing" + extension,
                     "Nothing, 2 of 3", save + "Wordless" + extension, "Wordless, 3 of 3"}));
    EXPECT_EQ((Lines{ReadFile(paths[0]), ReadFile(paths[1]), ReadFile(paths[2])}),
              (Lines{first, second, third}));
  }
  EXPECT_EQ(program.folder.Count(), 3u);
}

TEST(Writers, EachCanBeCalledForOneRow) {
  Program program({{"en", "English", Document({{"61.25", "1", "one"}})}});
  program.Search({});
  Window1& form = program.Form();
  for (const auto member : {&Window1::getTranscriptions, &Window1::DoSRT, &Window1::DoVTT}) (form.*member)(0);
  EXPECT_EQ(program.Calls(),
            (Lines{"save: text/plain English.txt", "save:  English.srt", "save:  English.vtt"}));
  EXPECT_EQ(form.SecsToTimecode(61.25), "00:01:01.25");
  EXPECT_EQ(form.returnTimecodeSRT(61.25), "00:01:01.250");
  EXPECT_EQ(form.timecodeToSecs("00:01:01.25"), "61.25");
}

TEST(Writers, TranscriptsEmptyTheTextAreaAndCaptionsLeaveTheDocument) {
  Program program({{"en", "English", Document(kTwo)}});
  program.Search({0});
  program.Click("TextBox lineBox PushButton1");  // the dialog is cancelled
  EXPECT_EQ(program.Calls(), Lines{"save: text/plain English.txt"});
  EXPECT_EQ(program.Form().TextArea1.Text(), "");
  const std::string normalised = "1.5 ||| 2 ||| one ||| 3 ||| 0 ||| two ||| ";
  for (const char* box : {"SRTBox", "WebVTTBox"}) {
    program.Click(box + " PushButton1"s);
    EXPECT_EQ(program.Form().TextArea1.Text(), normalised);
  }
}

TEST(Writers, OptionsAreReadForEachCue) {
  Program program({{"en", "English", Document({{"0", "1", "a"}, {"1", "1", "b"}, {"2", "1", "c"}})}});
  program.Search({0});
  program.Click("TextBox lineBox");
  Window1& form = program.Form();
  // The writer yields after each cue. After the first the user asks for timecodes, after the second for a
  // paragraph, and not to open the file.
  program.host.onYield = [&, cues = 0]() mutable {
    if (form.TextArea1.Text().find(kSeparator) == std::string::npos) return;
    ++cues;
    if (cues == 1) program.Click("timecodeBox");
    if (cues == 2) program.Click("paragraphBox openBox");
  };
  const std::string path = program.WillSave("out");
  program.Click("PushButton1");
  EXPECT_EQ(program.Calls(), Lines{"save: text/plain English.txt"});
  EXPECT_EQ(ReadFile(path), "a\n[00:00:01.00]\tb\nc ");
}

TEST(Writers, AFailedSaveIsReportedAndTheNextTrackFollows) {
  for (const char* box : {"TextBox", "SRTBox", "WebVTTBox"}) {
    Program program({{"en", "English", Document(kTwo)}, {"de", "German", Document({})}});
    program.Search({0, 1});
    program.Click(box + " lineBox"s);
    const std::pair<std::string, std::string> targets[] = {
        {program.folder / "none/file", "\"file\" could not be saved: No such file or directory."},
        {"/dev/full", "\"full\" could not be saved: No space left on device."},
    };
    for (const auto& [path, words] : targets) {
      program.host.saves.push_back(path);
      const std::string good = program.WillSave("good");
      program.Click("PushButton1");
      const Lines calls = program.Calls();
      ASSERT_EQ(calls.size(), 4u) << box << path;
      EXPECT_EQ(calls[1], "message: " + words);
      EXPECT_EQ(calls[3], "launch: " + good);
      EXPECT_EQ(program.host.outcome, "1 saved, 1 failed");
      EXPECT_EQ(program.folder.Count(), 1u);  // no other file is left
    }
  }
}

TEST(Download, ALostConnectionIsReportedAndTheNextTrackFollows) {
  Program program({{"de", "German", ""}, {"en", "English", Document(kTwo)}, {"fr", "French", ""}});
  for (const char* lost : {"de", "fr"})
    program.server.AnswerAt(TrackPath("abc", lost), {"", Reply::End::Reset});
  program.Search({0, 1, 2});
  program.Click("SRTBox");
  const std::string second = program.WillSave("second");
  program.Click("PushButton1");
  const std::string lost =
      "message: Error code: 0 - A connection to YouTube was not able to be established. Check your internet connection and try again.\ncause: The reply broke off before the first byte of its text.";
  EXPECT_EQ(program.Calls(), (Lines{lost, "save:  English.srt", "launch: " + second, lost}));
  EXPECT_EQ(program.Form().TextArea1.Text(), "");
}

TEST(Download, BlanksAreRemovedFromTheRequest) {
  Program program({{"e n ", "Eng/lish\" lang_default=\"true", Document({})}});
  program.Search({0});
  program.server.AnswerAt(TrackPath("abc", "en"), {Page(Document({}))});
  program.app.vidCode = "a b c";
  program.Click("SRTBox PushButton1");
  EXPECT_EQ(program.server.Requests().back(),
            "GET /api/timedtext?&v=abc&lang=en HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " +
                program.server.Host() + "\r\n\r\n");
  EXPECT_EQ(program.Calls(), Lines{"save:  Eng_lish.srt"});
}

TEST(Download, AnIncompleteFormGivesTheFirstMissingPart) {
  Program program({{"en", "English", Document({})}});
  const auto calls = [&](const Lines& expected) {
    program.Click("PushButton1");
    EXPECT_EQ(program.Calls(), expected);
  };
  calls(
      {"message: You must paste the URL of your YouTube movie into the first form field before you can download the transcripts.",
       "focus: TextField1"});
  program.Form().TextField1.UserTypes("x");
  calls(
      {"message: There are no selected languages to retrieve. Did you click the Search button? If you did there may be no uploaded closed captions to retrieve."});
  program.Search({});
  calls({"message: You must choose a language to continue."});
  program.Form().Listbox1.UserSelects({0});
  calls({"message: You need to choose either SRT File, WebVTT File, or Text Transcript to download."});
  program.Click("TextBox timecodeBox");
  calls({"message: You must choose your transcript format either in Paragraph Form or Line-by-line."});
  EXPECT_EQ(program.server.Requests().size(), 1u);
  program.Click("WebVTTBox");  // text forms no longer matter
  program.Form().TextField1.UserTypes("another link");
  calls({"save:  English.vtt"});
}
