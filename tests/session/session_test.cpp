// The session tool: its actions, its JSON, and the Search command driven through it.

#include <sys/wait.h>

#include <cstdlib>

#include "runtime/Text.h"
#include "support/SessionDriver.h"
#include "support/recorded.h"

namespace {

const std::vector<Track> kThree = {{"en", "English", Document({{"1.5", "2", "Hello"}})},
                                   {"de", "German", Document({{"1.5", "2", "Hallo"}})},
                                   {"pt-BR", "Brazilian", Document({})}};

const std::string kNoTracks =
    "There are no transcripts available for this video. Auto-generated transcripts contain no data and cannot be downloaded.";
const std::string kHeaders = " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: ";
const std::string kNoLink = Message("This does not appear to be a YouTube URL.");

nlohmann::json Of(SessionDriver& driver, const char* control) {
  return driver.State()["windows"]["Window1"]["controls"][control];
}
std::string Rows(SessionDriver& driver) { return Of(driver, "Listbox1")["rows"].dump(); }

// The exit status, and what the tool has printed.
std::pair<int, std::string> RunTool(const std::string& options, const std::string& input) {
  TemporaryFolder folder;
  WriteFile(folder / "in", input);
  const std::string command = "<" + (folder / "in") + " >" + (folder / "out") +
                              " 2>&1 TMPDIR=" + folder.Path() + " " RAVELYN_SESSION_PATH " " + options;
  const int status = std::system(command.c_str());
  EXPECT_EQ(folder.Count(), 2u) << "its temporary folder is removed";
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder / "out")};
}

}  // namespace

// After a change of the layout: renew the pictures in docs/, then windows.txt (see ExpectRecorded).
TEST(Session, ShowsTheWindowsAsInTheDocuments) {
  SessionDriver driver;
  driver.OpenWith(kThree, "0");
  driver.Run("type searchField Hello\nclick PushButton3\nselect 2 0\nclick Canvas1");
  const std::string state = ReplaceAll(driver.Run("dump").at(0), kVersion, "");
  ExpectRecorded(ReplaceAll(state, "},\"", "},\n\"") + "\n", "session/windows.txt");
}

TEST(Session, AnswersDialogsAndReportsHowACommandEnded) {
  SessionDriver driver;
  driver.OpenWith({{"en", "English", Document({{"1", "1", "on one"}, {"2", "1", "one"}})},
                   {"de", "German", Document({{"1", "1", "on"}})},
                   {"fr", "French", Document({{"1", "1", "un"}})}},
                  "0 1 2");
  EXPECT_EQ(driver.outcome, "3 languages");
  driver.Run("type searchField on\nclick PushButton3");
  EXPECT_EQ(driver.outcome, "3 hits in 2 tracks");
  const std::string path = driver.folder / "a b.srt";
  EXPECT_EQ(driver.Run("# skipped\n\nclick SRTBox\ncancel\nsave " + path + "\nclick PushButton1"),
            (Lines{Saved("", "English.srt", ""), Saved("", "German.srt", path), Launched(path),
                   Saved("", "French.srt", "")}));
  EXPECT_EQ(driver.outcome, "1 saved, 2 cancelled");
}

// What reads the session's output answers as soon as an action has ended.
TEST(Session, FlushesAfterEachAction) {
  struct Buffer : std::stringbuf {
    int sync() override { return ++flushed, 0; }
    int flushed = 0;
  } buffer;
  std::ostream out(&buffer);
  std::istringstream in("quit\nopen");
  Session(EndpointsAt(""), "", out).Run(in);
  EXPECT_EQ(buffer.flushed, 2);
}

TEST(Session, AnActionThatCantBeDoneGivesOneErrorAndTheNextOneRuns) {
  SessionDriver driver;
  EXPECT_EQ(driver.Run("dump\nfrobnicate\n# skipped\n\nquit"),
            (Lines{Refused(1, "nothing is open yet"), Refused(2, "nothing is open yet"),
                   Refused(5, "nothing is open yet")}));
  driver.OpenWith(kThree, "1");
  for (const std::string& row : PartsOf("session/refused.txt", "\n")) {
    EXPECT_EQ(driver.Run(NthField(row, "~", 1)), Lines{Refused(1, NthField(row, "~", 2))}) << row;
  }
  EXPECT_EQ(Of(driver, "Listbox1")["selected"].dump(), "[1]");
  EXPECT_EQ(driver.Run("quit\nclick PushButton1\nopen"),
            (Lines{Refused(2, "the program has quit"), Refused(3, "the program was opened before")}));
}

TEST(Session, TypesPastesAndSelectsAsAUserWould) {
  SessionDriver driver;
  driver.OpenWith(kThree, "0 1 2");
  const std::string link = " two  blanks youtu.be/-Qn3_tW8yLc ";
  driver.Run("paste TextField1 " + link + "\npaste searchField " + link + "\nselect  2  2 1");
  EXPECT_EQ(Of(driver, "TextField1")["text"], "https://www.youtube.com/watch?v=-Qn3_tW8yLc");
  EXPECT_EQ(Of(driver, "searchField")["text"], link) << "it takes no links";
  EXPECT_EQ(Of(driver, "Listbox1")["selected"].dump(), "[1,2]");
  driver.Run("type searchField\nselect");
  EXPECT_EQ(Of(driver, "searchField")["text"], "");
  EXPECT_EQ(Of(driver, "Listbox1")["selected"].dump(), "[]");
}

TEST(Search, TakesTheCodeOutOfALink) {
  SessionDriver driver;
  driver.server.Answer(Page(TrackList({kThree[0]})));
  driver.Run("open");
  // The code ends at the next "v="; the long form takes precedence.
  for (const std::string& row : PartsOf("session/codes.txt", "\n")) {
    const std::string link = NthField(row, "~", 1), code = NthField(row, "~", 2);
    EXPECT_EQ(driver.Run("type TextField1 " + link + "\nclick PushButton2"), Lines{}) << link;
    EXPECT_EQ(driver.State()["app"]["vidCode"], code) << link;
    EXPECT_EQ(driver.server.Requests().back(),
              "GET " + ListPath(code) + kHeaders + driver.server.Host() + "\r\n\r\n")
        << link;
  }
}

TEST(Search, ARefusedLinkChangesNothing) {
  SessionDriver driver;
  driver.OpenWith(kThree, "1");
  for (const std::string link :
       {"", "   ", "abc", "https://host/watch?a=1&v=abc", "?V=x", "youtuXbe/x", "youtu.be"}) {
    driver.Run("type TextField1 " + link);
    const std::string before = driver.Run("dump").at(0);
    EXPECT_EQ(driver.Run("click PushButton2"),
              Lines{link.empty() ? Message("Please paste a YouTube URL into the form first.") : kNoLink});
    EXPECT_EQ(driver.Run("dump").at(0), before) << link;
  }
  EXPECT_EQ(driver.server.Requests().size(), 1u);
}

TEST(Search, ListsTheTracksOfAReply) {
  const auto list = [](const std::string& tracks) {
    return "<?xml version=\"1.0\"?><transcript_list docid=\"1\">" + tracks + "</transcript_list>";
  };
  const auto track = [](const std::string& rest, const std::string& name = "") {
    return "<track id=\"0\" name=\"" + name + "\" lang_code=\"en\" lang_translated=\"" + rest + "\"/>";
  };
  const std::pair<std::string, std::string> rows[] = {
      {Page(TrackList(kThree)), R"([["English","en"],["German","de"],["Brazilian","pt-BR"]])"},
      {Page(list(track("English", "Named"))), R"([["English","en"]])"},
      {Page(list(track("A lang_code\" lang_default=\"true") + track("A &amp; B"))),
       R"([["A lang_code","en"],["A &amp; B","en"]])"},
      // Bytes that are not UTF-8 are printed as replacements.
      {Page(TrackList({{"en", "A\xFF\"\\\x01Z", ""}})), R"([["A�\"\\\u0001Z","en"]])"},
      {Page(list(track("X\" lang_default=\"false"))), R"([["X\" lang_default=\"false","en"]])"},
      {Page(list("")), "[]"},
      {Page(list("").substr(0, 20)), "[]"},
      {Page(""), "[]"},
      // With a part that can't be cut, a good one before it does not count either.
      {Page("<html><a href=\"x\">error</a><b c=\"d\">e</b></html>"), "[]"},
      {Page(list(track("E") + "<track id=\"1\" lang_code=\"de\"/>")), "[]"},
      {Page(list("<track lang_code=en lang_translated=\"E\"/>")), "[]"},
      {"HTTP/1.0 500 Oh\r\n\r\n" + list(track("E")), R"([["E","en"]])"},
  };
  SessionDriver driver;
  driver.Run("open\ntype TextField1 ?v=abc");
  for (const auto& [reply, cells] : rows) {
    driver.server.AnswerAt(ListPath("abc"), {reply});
    EXPECT_EQ(driver.Run("click PushButton2"), cells == "[]" ? Lines{Message(kNoTracks)} : Lines{}) << reply;
    EXPECT_EQ(Rows(driver), cells) << reply;
    EXPECT_EQ(Of(driver, "XMLList")["rows"].size(), nlohmann::json::parse(cells).size());
  }
}

TEST(Search, ReplacesTheBufferAndTheRowsOfTheEarlierSearch) {
  SessionDriver driver;
  driver.OpenWith(kThree, "0 2");
  Offer(driver.server, "two", {kThree[1]});
  EXPECT_EQ(driver.Run("type TextField1 youtu.be/two\nclick PushButton2"), Lines{});
  EXPECT_EQ(Rows(driver) + Of(driver, "Listbox1")["selected"].dump(), R"([["German","de"]][])");
  EXPECT_EQ(Of(driver, "XMLList")["rows"].size(), 1u);
  EXPECT_EQ(
      Of(driver, "TextArea1")["text"],
      R"(<?xml version="1.0" encoding="utf-8"?><transcript_list docid="7">:::<track id="0" name="" lang_code="de" lang_original="?" lang_translated="German" lang_default="true"/>:::</transcript_list>)");
  // The rows belong to the video that was searched for, even if the link changes.
  EXPECT_EQ(driver.Run("type TextField1 another\nselect 0\nclick SRTBox\nclick PushButton1"),
            Lines{Saved("", "German.srt", "")});
  driver.server.AnswerAt(ListPath("gone"), {"", Reply::End::Reset});
  EXPECT_EQ(driver.Run("type TextField1 ?v=gone\nclick PushButton2"),
            Lines{Message(kNoTracks, "The reply broke off before the first byte of its text.")});
  EXPECT_EQ(Rows(driver), "[]");
  EXPECT_EQ(driver.State()["app"]["vidCode"], "gone");
}

TEST(SessionTool, EndsWith2AfterAWrongOptionAndAnActionThatCantBeDone) {
  const std::string opened = Shown("Window1") + "\n" + R"({"event":"done","action":"open"})" + "\n";
  const std::string wrong = "ravelyn-session: wrong option or value: ";
  const struct {
    std::string options, actions, beginning;
    int status = 2;
  } rows[] = {
      {"--probe-address my-host.invalid", "", "", 0},
      {"", "open\nquit\n", opened + R"({"event":"done","action":"quit"})" + "\n", 0},
      {"", "open\nclick Nobody\r\n", opened + Refused(2, "Window1 has no control Nobody") + "\n"},
      {"--version", "", std::string("ravelyn-session ") + kVersion + "\n", 0},
      {"--help", "", "Usage: ravelyn-session [OPTION]...\n", 0},
      {"--help >/dev/full", "", ""},
      {">/dev/full", "open\nquit\n", ""},
      {"--frobnicate x", "open", wrong + "--frobnicate\n"},
      {"--track-list", "open", wrong + "--track-list\n"},
      {"--track-list ''", "open", wrong + "--track-list\n"},
      {"--prefs /nowhere/at/all", "open", wrong + "--prefs\n"},
      {"--probe-address '127.0.0.1;false'", "open", wrong + "--probe-address\n"},
      {"--probe-address -f", "open", wrong + "--probe-address\n"},
  };
  for (const auto& [options, actions, beginning, status] : rows) {
    const auto [ended, printed] = RunTool(options, actions);
    EXPECT_EQ(ended, status) << options;
    EXPECT_EQ(printed.substr(0, beginning.size()), beginning) << options;
  }
}

TEST(SessionTool, FollowsItsOptions) {
  LoopbackServer list, text;
  Offer(list, "abc", kThree);
  Offer(text, "abc", kThree);
  const TemporaryFolder folder;
  const auto [status, output] = RunTool(
      "--track-list " + list.Host() + " --timed-text " + text.Host() + " --prefs " + (folder / "new") +
          " --probe-address 240.0.0.1",
      "open\ntype TextField1 ?v=abc\nclick PushButton2\nselect 0\nclick SRTBox\nclick PushButton1\nquit");
  EXPECT_EQ(status, 0);
  const Lines printed = LinesOf(output);
  ASSERT_EQ(printed.size(), 12u);
  EXPECT_TRUE(printed[1].starts_with(R"({"event":"message","text":"Ravelyn cannot work)"));
  EXPECT_EQ(printed[8], Saved("", "English.srt", ""));
  EXPECT_EQ(list.Requests().size(), 1u);
  EXPECT_EQ(text.Requests().size(), 1u);
  EXPECT_EQ(ReadFile(folder / "new/com.tarnvale.ravelyn.user.prefs"), "SRT\ntrue\nfalse\nfalse\nfalse\n");
}
