// The option logic and the probe of the main form, and the layout of the window that can be resized.

#include <gtest/gtest.h>

#include "app/MainMenuBar.h"
#include "ravelyn/commands.h"
#include "support/Program.h"
#include "support/processes.h"
#include "wordsearch/SearchWin.h"

namespace {

using Lines = std::vector<std::string>;

std::string OnOff(const CheckBox& box) {
  return std::string(box.Value() ? "on" : "off") + (box.Enabled() ? "" : "/dis");
}

// File type, three boxes, two brackets; then the button's caption and the option strings.
std::string OptionState(Program& program) {
  Window1& f = program.Form();
  const App& app = program.app;
  const auto bracket = [](std::initializer_list<const Line*> lines) {
    const bool first = (*lines.begin())->Visible();
    for (const Line* line : lines) EXPECT_EQ(line->Visible(), first) << line->Name();
    return first ? " shown" : " hidden";
  };
  EXPECT_LE(f.TextBox.Value() + f.SRTBox.Value() + f.WebVTTBox.Value(), 1);
  return std::string(f.TextBox.Value()     ? "text "
                     : f.SRTBox.Value()    ? "SRT "
                     : f.WebVTTBox.Value() ? "VTT "
                                           : "none ") +
         OnOff(f.paragraphBox) + " " + OnOff(f.lineBox) + " " + OnOff(f.timecodeBox) +
         bracket({&f.Line1, &f.Line2, &f.Line3, &f.Line9}) + bracket({&f.Line10, &f.Line11}) + " | " +
         f.PushButton1.Caption() + " | " + app.checkedDL + " " + app.openDL + " " + app.paragraphChecked +
         " " + app.timecodeChecked + " " + app.linebyline;
}

}  // namespace

TEST(ResultsWindow, ResizingMovesItsControlsWithTheEdges) {
  Program program;
  SearchWin& window = SearchWin::Get();
  window.UserResizes(700, 391);
  window.UserResizes(600, 391);
  EXPECT_EQ(window.resultsList.Height(), 291);  // 295 before
  window.UserResizes(800, 500);
  EXPECT_EQ((std::vector{window.resultsList.Width(), window.resultsList.Height(), window.Label1.Top(),
                         window.closeBtn.Left(), window.closeBtn.Top(), window.saveBtn.Left(),
                         window.saveBtn.Top()}),
            (std::vector{760, 400, 449, 564, 460, 664, 460}));
  window.UserResizes(1, 1);  // no smaller than 64 by 64
  EXPECT_EQ(window.resultsList.Width(), 24);
  EXPECT_EQ(window.saveBtn.Left(), -72);
}

// Each row starts with the state of the previous one.
TEST(Options, AClickSetsTheOtherOptionsAndTheirStrings) {
  Program program;
  EXPECT_EQ(OptionState(program),
            "none off/dis off/dis off/dis hidden hidden | Download | true true false false false");
  const std::string text = " | Download Text Transcript(s) | ", srt = " | Download SRT File(s) | ";
  const std::string paragraph = " | Download Transcript(s) | ";
  const std::pair<const char*, std::string> rows[] = {
      {"paragraphBox", "none off/dis off/dis off/dis hidden hidden | Download | true true false false false"},
      {"TextBox", "text off off off shown shown" + text + "Text true false false false"},
      {"timecodeBox", "text off off on shown shown" + text + "Text true false true false"},
      {"lineBox", "text off on on shown shown" + text + "Text true false true true"},
      {"lineBox",
       "text off off on shown shown" + text + "Text true false false false"},  // the box stays checked
      {"lineBox", "text off on on shown shown" + text + "Text true false false true"},
      {"paragraphBox", "text on off off/dis shown hidden" + paragraph + "Text true true false false"},
      {"TextBox", "text on off off shown shown" + text + "Text true true false false"},  // clicked again
      {"lineBox", "text off on off shown shown" + text + "Text true false false true"},
      {"paragraphBox", "text on off off/dis shown hidden" + paragraph + "Text true true false false"},
      {"lineBox", "text off on off shown shown" + paragraph + "Text true false false true"},
      {"timecodeBox", "text off on on shown shown" + paragraph + "Text true false true true"},
      {"SRTBox", "SRT off/dis off/dis off/dis hidden hidden" + srt + "SRT true false false false"},
      {"lineBox", "SRT off/dis off/dis off/dis hidden hidden" + srt + "SRT true false false false"},
      {"openBox", "SRT off/dis off/dis off/dis hidden hidden" + srt + "SRT false false false false"},
      {"TextBox", "text off off off shown shown" + text + "Text false false false false"},
      {"paragraphBox", "text on off off/dis shown hidden" + paragraph + "Text false true false false"},
      {"paragraphBox", "text off off off/dis shown hidden" + paragraph + "Text false true false false"},
      {"WebVTTBox", "VTT off/dis off/dis off/dis hidden hidden" + text + "VTT false false false false"},
      {"SRTBox", "SRT off/dis off/dis off/dis hidden hidden" + srt + "SRT false false false false"},
      {"SRTBox", "SRT off/dis off/dis off/dis hidden hidden" + srt + "SRT false false false false"},
      {"WebVTTBox", "VTT off/dis off/dis off/dis hidden hidden" + text + "VTT false false false false"},
      {"openBox", "VTT off/dis off/dis off/dis hidden hidden" + text + "VTT true false false false"},
      {"TextBox", "text off off off shown shown" + text + "Text true false false false"},
  };
  int number = 0;
  for (const auto& [click, state] : rows) {
    program.Click(click);
    EXPECT_EQ(OptionState(program), state) << "row " << ++number << ", " << click;
  }
}

TEST(Options, AValueSetByCodeActsAsAClickIfItChanges) {
  Program program;
  Window1& form = program.Form();
  form.lineBox.SetValue(true);  // its handler runs although it is disabled
  EXPECT_EQ(OptionState(program),
            "none off/dis on/dis off hidden shown | Download | true true false false true");
  form.TextBox.SetValue(true);
  form.PushButton1.SetCaption("mine");
  form.TextBox.SetValue(true);
  form.openBox.SetValue(true);
  form.TextBox.SetValue(false);  // switching off raises no Action
  EXPECT_EQ(OptionState(program), "none off on off shown shown | mine | Text true false false true");
}

TEST(MenuBar, EachAccessorGivesTheItemOfItsName) {
  const std::pair<MenuItem&, const char*> items[] = {{FileQuit(), "FileQuit"},
                                                     {FileNewWindow(), "FileNewWindow"},
                                                     {FileAboutRavelyn(), "FileAboutRavelyn"},
                                                     {FileHelp(), "FileHelp"},
                                                     {EditUndo(), "EditUndo"},
                                                     {EditSeparator1(), "EditSeparator1"},
                                                     {EditCut(), "EditCut"},
                                                     {EditCopy(), "EditCopy"},
                                                     {EditPaste(), "EditPaste"},
                                                     {EditClear(), "EditClear"},
                                                     {EditSeparator2(), "EditSeparator2"},
                                                     {EditSelectAll(), "EditSelectAll"}};
  for (const auto& [item, name] : items) EXPECT_EQ(item.Name, name);
  EXPECT_EQ(FileMenu().Name + EditMenu().Name, "FileMenuEditMenu");
}

TEST(Probe, AFailingAddressGivesOneWarningPerForm) {
  const Lines shown = {"show: Window1"};
  const Lines warned = {
      "show: Window1",
      "message: Ravelyn cannot work without an Internet connection. Please check your connection prior to continuing."};
  for (const auto& [address, words] : {std::pair{"127.0.0.1", shown}, std::pair{"240.0.0.1", warned}}) {
    FakePlatform host;
    TemporaryFolder prefs;
    host.prefsFolder = prefs.Path();
    Endpoints endpoints;
    endpoints.ProbeAddress = address;
    App app(host, kCommands, endpoints);
    app.Start();
    EXPECT_EQ(host.calls, words);
    app.FindWindow("Window1")->UserCloses();
    host.calls.clear();
    app.ChooseMenuItem("FileNewWindow");
    EXPECT_EQ(host.calls, words);
    Window1::Get().Show();
    EXPECT_EQ(host.calls.size(), words.size() + 1);
  }
}

TEST(Probe, SleepsUntilPingEnds) {
  const OwnPing ping("sleep 0.3");
  SilentPlatform host;
  App app(host, kCommands);
  app.Start();
  EXPECT_LT(host.waits, 5);
  EXPECT_LT(host.yields, 5);
}
