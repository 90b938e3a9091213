// What a user may do while a command runs: close its window, stop it, quit, change options. Each action is
// tried at every yield of the command.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "ravelyn/commands.h"
#include "support/Program.h"
#include "support/processes.h"
#include "wordsearch/SearchWin.h"

namespace {

using Lines = std::vector<std::string>;

const std::vector<Track> kTracks = {
    {"en", "English", Document({{"1", "1", "one"}, {"2", "1", "two"}, {"3", "1", "once"}})},
    {"de", "German", Document({{"1", "1", "zwei"}, {"2", "1", "on"}})},
};

struct Command {
  std::string before;  // clicks before the command
  std::string button;
  Lines wholeFiles;  // possible contents of each complete file
};

const std::map<std::string, Command> kCases = {
    {"search", {"", "PushButton2", {}}},
    {"text", {"TextBox lineBox", "PushButton1", {"one\ntwo\nonce\n", "zwei\non\n"}}},
    {"SRT",
     {"SRTBox",
      "PushButton1",
      {"1\n00:00:01,000 --> 00:00:02,000\none\n\n2\n00:00:02,000 --> 00:00:03,000\ntwo\n\n"
       "3\n00:00:03,000 --> 00:00:04,000\nonce\n\n",
       "1\n00:00:01,000 --> 00:00:02,000\nzwei\n\n2\n00:00:02,000 --> 00:00:03,000\non\n\n"}}},
    {"words", {"", "PushButton3", {}}},
    {"results",
     {"PushButton3",
      "SearchWin.saveBtn",
      {"Search results for the term 'on' in the video: https://www.youtube.com/watch?v=abc\n\n"
       "[00:00:01.000]\tone\n\n[00:00:03.000]\tonce\n\n[00:00:02.000]\ton\n\n\n"}}},
};

// A program just before a command, and what it leaves afterwards.
struct Stage : Program {
  explicit Stage(const Command& what) : Program(kTracks), command(what) {
    Search({0, 1});
    Form().searchField.UserTypes("on");
    Click(command.before);
    WillSave("a");
    WillSave("b");
    host.calls.clear();
  }

  // Runs the command with `action` at its n-th yield, from 1, and leaves the later calls to the host; false
  // if there are fewer yields.
  bool Run(std::int64_t n, const std::function<void()>& action) {
    const std::int64_t at = host.yields + n;
    bool done = false;
    host.onYield = [&, at] {
      if (host.yields != at) return;
      done = true;
      action();
      host.calls.clear();
    };
    Click(command.button);
    host.onYield = nullptr;
    return done;
  }

  // Every file is complete, and there is no other file.
  void ExpectWholeFiles() const {
    std::size_t there = 0;
    for (std::size_t i = 0; i < command.wholeFiles.size(); ++i) {
      const std::string path = folder / (i == 0 ? "a" : "b");
      if (!std::filesystem::exists(path)) continue;
      ++there;
      EXPECT_EQ(ReadFile(path), command.wholeFiles[i]);
    }
    EXPECT_EQ(folder.Count(), there);
  }

  void CloseWindow() {
    app.FindWindow(command.button == "SearchWin.saveBtn" ? "SearchWin" : "Window1")->UserCloses();
  }

  // A stopped search lists nothing. The earlier reply is gone before the next one arrives.
  void ExpectLists() {
    const bool searched = command.button == "PushButton2";
    EXPECT_EQ(Form().Listbox1.ListCount(), searched ? 0 : 2);
    EXPECT_EQ(Form().XMLList.ListCount(), searched ? 0 : 2);
    if (searched && server.Requests().size() == 1) {
      EXPECT_EQ(Form().TextArea1.Text(), "");
    }
  }

  Command command;
};

// Runs every command once for each of its yields, with `action` there and `check` afterwards. A server on
// this machine answers within a few waits, so there are few yields.
void AtEveryYield(const std::function<void(Stage&)>& action, const std::function<void(Stage&)>& check) {
  for (const auto& [name, command] : kCases) {
    bool reached = true;
    for (std::int64_t n = 1; reached; ++n) {
      SCOPED_TRACE(name + std::to_string(n));
      Stage stage(command);
      reached = stage.Run(n, [&] { action(stage); });
      if (reached) check(stage);
      stage.ExpectWholeFiles();
      ASSERT_LT(n, 200);
    }
  }
}

// The label counts the hits of the last run that had any: two in the first track, one in the other.
void ExpectCountedRows() {
  const SearchWin* results = SearchWin::OpenOrNil();
  if (!results) return;
  const std::int64_t rows = results->resultsList.ListCount();
  EXPECT_EQ(results->searchTerm.Text(),
            "Displaying " + std::string(rows == 2 ? "2" : "1") + " results for search term: \"on\".");
}

}  // namespace

TEST(Unwinding, ClosingAWindowOrStoppingEndsItsCommandAtOnce) {
  for (const bool stops : {false, true}) {
    SCOPED_TRACE(stops);
    AtEveryYield([&](Stage& stage) { stops ? stage.app.StopCommand() : stage.CloseWindow(); },
                 [&](Stage& stage) {
                   if (stops && stage.command.button == "SearchWin.saveBtn")
                     return;  // not a command of the form
                   EXPECT_EQ(stage.Calls(), Lines{});
                   EXPECT_FALSE(stage.app.IsCommandRunning());
                   if (stage.command.button == "PushButton3") ExpectCountedRows();
                   if (stops) stage.ExpectLists();
                   stage.app.ChooseMenuItem("FileNewWindow");  // a closed form can be followed by another
                   stage.Search({0});
                   EXPECT_EQ(stage.Form().Listbox1.ListCount(), 2);
                 });
  }
}

TEST(Unwinding, ClosingTheResultsEndsTheWordSearchAtOnce) {
  bool closed = false;
  AtEveryYield(
      [&](Stage& stage) {
        closed = SearchWin::OpenOrNil();
        if (!closed) return;
        SearchWin::Get().UserCloses();
        EXPECT_FALSE(stage.app.IsCommandRunning());
      },
      [&](Stage& stage) {
        if (!closed) return;
        EXPECT_EQ(stage.Calls(), Lines{});
        EXPECT_EQ(SearchWin::OpenOrNil(), nullptr);
      });
}

TEST(Unwinding, ANewFormSearchesBeforeTheOldSearchHasUnwound) {
  Program program(kTracks);
  program.server.AnswerAt(ListPath("slow"), {"", Reply::End::Stall});
  program.Form().TextField1.UserTypes("?v=slow");
  std::int64_t listed = 0;
  program.host.onYield = [&] {
    if (program.server.Requests().empty()) return;  // the server takes the next request only after this one
    program.Form().UserCloses();
    program.host.onYield = [&] {  // at the new form's probe
      program.Search({});
      listed = program.Form().Listbox1.ListCount();
    };
    program.app.ChooseMenuItem("FileNewWindow");
    program.host.onYield = [] {};
  };
  program.Click("PushButton2");
  EXPECT_EQ(listed, 2);
}

TEST(Unwinding, QuittingEndsEveryCommandAndSavesThePreferences) {
  AtEveryYield([](Stage& stage) { stage.app.ChooseMenuItem("FileQuit"); },
               [](Stage& stage) {
                 EXPECT_EQ(stage.Calls(), Lines{});
                 stage.app.Stop();
                 EXPECT_EQ(stage.prefs.Count(), 1u);
                 EXPECT_TRUE(stage.app.Windows().empty());
               });
}

TEST(Unwinding, AWindowClosedDuringADialogEndsItsCommand) {
  for (const auto& [name, command] : kCases) {
    if (command.wholeFiles.empty()) continue;
    for (const bool quit : {false, true}) {
      Stage stage(command);
      stage.host.onSaveDialog = [&stage, quit] { quit ? stage.app.Quit() : stage.CloseWindow(); };
      stage.Click(command.button);
      EXPECT_EQ(stage.folder.Count(), 0u) << name;
      EXPECT_EQ(stage.Calls().size(), quit ? 1u : 2u) << name << ": the dialog and the closing";
    }
  }
}

TEST(Unwinding, AFormClosedDuringAMessageGetsNoFocus) {
  for (const char* button : {"PushButton1", "PushButton3"}) {
    Program program;  // without a link both commands move the focus to its field
    program.host.onMessage = [&] { program.Form().UserCloses(); };
    program.Click(button);
    EXPECT_EQ(program.app.FocusedControl(), nullptr);
    EXPECT_EQ(program.Calls().back(), "close: Window1");
  }
}

TEST(Unwinding, ClosingTheFormEndsItsProbeAndPing) {
  for (const bool quit : {false, true}) {
    NamedProcess named;
    const OwnPing ping("echo $$ > '" + named.Path() + "'; exec sleep 100");
    FakePlatform host;
    App app(host, kCommands);
    host.onYield = [&] {
      if (host.yields < 3) return;
      named.Await();
      EXPECT_FALSE(named.EndsWithin(0));
      quit ? app.Quit() : app.FindWindow("Window1")->UserCloses();
    };
    app.Start();
    EXPECT_EQ(host.yields, 3);
    EXPECT_TRUE(named.EndsWithin(30'000));
    EXPECT_EQ(host.calls, quit ? Lines{"show: Window1"} : (Lines{"show: Window1", "close: Window1"}));
  }
}

TEST(Unwinding, OptionsClickedDuringARunActAtOnce) {
  Stage stage(kCases.at("text"));
  // The choice changes from text to WebVTT; WebVTT follows when all rows are saved as text.
  EXPECT_TRUE(stage.Run(1, [&] { stage.Click("WebVTTBox openBox"); }));
  EXPECT_EQ(stage.host.calls, (Lines{"save: text/plain English.txt", "save: text/plain German.txt",
                                     "save:  English.vtt", "save:  German.vtt"}));
  EXPECT_EQ(ReadFile(stage.folder / "a"), "one two once ");
}

TEST(WordSearchRun, EndsWithATermThatWasSpoilt) {
  Stage stage(kCases.at("words"));
  stage.Run(1, [&] { stage.Form().searchField.UserTypes("("); });
  EXPECT_EQ(
      stage.host.calls,
      Lines{
          "message: The term \"(\" is not a valid search expression: at character 2, missing closing parenthesis."});
}

// The first run is ended after its first hit, and unwinds only when the second, with two hits, is over.
TEST(WordSearchRun, AnEndedRunLeavesTheLabelOfALaterOne) {
  Program program(kTracks);
  program.Search({0});
  program.Form().searchField.UserTypes("one");
  program.host.onYield = [&] {
    if (!SearchWin::OpenOrNil()) return;
    program.Form().UserCloses();
    program.app.ChooseMenuItem("FileNewWindow");
    program.Search({0});
    program.Form().searchField.UserTypes("on");
    program.Click("PushButton3");
    program.host.onYield = [] {};
  };
  program.Click("PushButton3");
  EXPECT_EQ(program.app.progress.searched, 1);
  EXPECT_EQ(SearchWin::Get().resultsList.ListCount(), 3);
  EXPECT_EQ(SearchWin::Get().searchTerm.Text(), "Displaying 2 results for search term: \"on\".");
}
