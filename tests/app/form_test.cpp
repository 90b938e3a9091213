// The option logic and the probe of the main form, and how the windows and menus are drawn.

#include <gtest/gtest.h>

#include <sstream>

#include "app/FileTypes1.h"
#include "app/MainMenuBar.h"
#include "ravelyn/commands.h"
#include "support/Program.h"
#include "support/processes.h"
#include "support/recorded.h"
#include "wordsearch/SearchWin.h"

namespace {

using Lines = std::vector<std::string>;

// The chosen file type, the three boxes (with "-" for a disabled one), two brackets; then the button's
// caption and the option strings.
std::string OptionState(Program& program) {
  Window1& f = program.Form();
  const App& app = program.app;
  std::string state;
  for (const RadioButton* type : {&f.TextBox, &f.SRTBox, &f.WebVTTBox})
    if (type->Value()) state += type->Name() + " ";
  for (const CheckBox* box : {&f.paragraphBox, &f.lineBox, &f.timecodeBox})
    state += std::string(box->Value() ? "1" : "0") + (box->Enabled() ? " " : "- ");
  for (const Line* line : {&f.Line1, &f.Line2, &f.Line3, &f.Line9, &f.Line10, &f.Line11})
    state += line->Visible() ? "|" : ".";
  return state + " " + f.PushButton1.Caption() + " " + app.checkedDL + " " + app.openDL + " " +
         app.paragraphChecked + " " + app.timecodeChecked + " " + app.linebyline;
}

void Draw(std::ostream& out, const ListLayout& l) {
  out << " columns=" << l.columns << " widths=" << l.columnWidths << " grid=" << l.gridHorizontal
      << l.gridVertical << " several=" << l.severalSelectable << " opens=" << l.clickOpens;
  for (const std::string& heading : l.headings) out << " heading=" << heading;
}

// What a view needs of a window, besides the values that a session prints.
void Draw(std::ostream& out, const Window& window) {
  const WindowFrame& f = window.Frame();
  out << window.Name() << " maximizable=" << f.maximizeButton << " shown=" << f.visible
      << " menus=" << f.menuBar << " dialog=" << f.dialog;
  for (const auto& handler : window.OwnMenuHandlers()) out << " " << handler.first;
  for (const Control* c : window.Controls()) {
    const Look& l = c->Appearance();
    out << "\n  " << c->Name() << " tab=" << c->TabIndex() << " font=" << l.fontSize << " italic=" << l.italic
        << " color=" << std::hex << l.color.value_or(0) << std::dec
        << " centred=" << (l.align == Align::Center) << " selectable=" << l.selectable
        << " lines=" << l.multiline << " default=" << l.defaultButton << " command=" << l.startsCommand
        << " \"" << l.placeholder << l.spoken << "\"";
    if (c->Kind() == ControlKind::Listbox) Draw(out, static_cast<const Listbox&>(*c).Layout());
  }
  out << "\n";
}

void Draw(std::ostream& out, const Menu& menu) {
  out << menu.Name << " " << menu.Caption << "\n";
  for (const MenuItem& i : menu.Items)
    out << "  " << i.Name << " " << i.Caption << " " << i.Shortcut << " quits=" << i.Quits
        << " help=" << i.ShowsHelp << " edits=" << (i.Edits ? static_cast<int>(*i.Edits) : -1) << "\n";
}

}  // namespace

// After a change: RAVELYN_KEEP=1 in the environment renews the file.
TEST(Windows, AreDrawnAsRecorded) {
  Program program;
  program.Click("Canvas1");
  std::ostringstream out;
  out << "\"" << SearchWin::Get().searchTerm.Text() << "\"\n";
  for (const auto& window : program.app.Windows()) Draw(out, *window);
  for (const Menu& menu : MainMenuBar().Menus) Draw(out, menu);
  const FileType& t = FileTypes1::Text();
  out << t.Name << t.Extensions << t.MacType << t.MacCreator << t.MimeType << t.ConformsTo << t.UTI
      << t.Imported;
  ExpectRecorded(out.str() + "\n", "app/drawn.txt");
}

TEST(ResultsWindow, ResizingMovesItsControlsWithTheEdges) {
  Program program;
  SearchWin& window = SearchWin::Get();
  window.UserResizes(800, 500);
  EXPECT_EQ((std::vector{window.resultsList.Width(), window.resultsList.Height(), window.Label1.Top(),
                         window.closeBtn.Left(), window.closeBtn.Top(), window.saveBtn.Left(),
                         window.saveBtn.Top()}),
            (std::vector{760, 400, 449, 564, 460, 664, 460}));
}

TEST(Commands, AreNamedWhileTheyRun) {
  Program program({{"en", "English", Document({{"1", "1", "one"}})}});
  std::string names;
  program.host.onYield = [&] {
    if (!names.ends_with(program.host.running + ".")) names += program.host.running + ".";
  };
  program.Form().UserGivesLink("https://host/watch?v=abc");
  program.Form().Listbox1.UserSelects({0});
  program.Click("SRTBox PushButton1 PushButton3 SearchWin.saveBtn");
  EXPECT_EQ(names, "Looking for captions.Downloading captions.Searching the captions.Saving the results.");
}

// Each state follows from the previous one. RAVELYN_KEEP=1 renews app/options.txt.
TEST(Options, AClickSetsTheOtherOptionsAndTheirStrings) {
  Program program;
  const std::string clicks =
      "TextBox timecodeBox lineBox lineBox lineBox paragraphBox lineBox timecodeBox TextBox SRTBox lineBox "
      "openBox TextBox paragraphBox paragraphBox WebVTTBox SRTBox openBox";
  std::string states = "start: " + OptionState(program) + "\n";
  for (const std::string& click : Split(clicks, " ")) {
    program.Click(click);
    states += click + ": " + OptionState(program) + "\n";
  }
  ExpectRecorded(states, "app/options.txt");
}

TEST(Options, AValueSetByCodeActsAsAClickIfItChanges) {
  Program program;
  Window1& form = program.Form();
  form.lineBox.SetValue(true);  // its handler runs although it is disabled
  EXPECT_EQ(OptionState(program), "0- 1- 0 ....|| Download true true false false true");
  form.TextBox.SetValue(true);
  form.PushButton1.SetCaption("mine");
  form.TextBox.SetValue(true);
  form.openBox.SetValue(true);
  form.TextBox.SetValue(false);  // switching off raises no Action
  EXPECT_EQ(OptionState(program), "0 1 0 |||||| mine Text true false false true");
  form.paragraphBox.SetValue(true);
  EXPECT_EQ(OptionState(program), "TextBox 1 0 0- ||||.. Download Transcript(s) Text true true false false");
}

TEST(MenuBar, EachAccessorGivesTheItemOfItsName) {
  std::string names = FileMenu().Name + " " + EditMenu().Name;
  for (const auto item : {FileQuit, FileNewWindow, FileAboutRavelyn, FileHelp, EditUndo, EditSeparator1,
                          EditCut, EditCopy, EditPaste, EditClear, EditSeparator2, EditSelectAll})
    names += " " + item().Name;
  EXPECT_EQ(
      names,
      "FileMenu EditMenu FileQuit FileNewWindow FileAboutRavelyn FileHelp EditUndo EditSeparator1 EditCut EditCopy EditPaste EditClear EditSeparator2 EditSelectAll");
}

TEST(Application, StoppedBeforeItsStartSavesNoPreferences) {
  FakePlatform host;
  const TemporaryFolder prefs;
  host.prefsFolder = prefs.Path();
  App(host, kCommands).Stop();
  EXPECT_EQ(prefs.Count(), 0u);
}

TEST(Probe, AFailingAddressGivesOneWarningPerForm) {
  const std::string warning =
      "|message: Ravelyn cannot work without an Internet connection. Please check your connection prior to continuing.";
  for (const auto& [address, words] :
       {std::pair<std::string, std::string>{"127.0.0.1", ""}, {"240.0.0.1", warning}}) {
    const std::string opened = "show: Window1" + words;
    FakePlatform host;
    Endpoints endpoints;
    endpoints.ProbeAddress = address;
    App app(host, kCommands, endpoints);
    app.Start();
    app.FindWindow("Window1")->UserCloses();
    app.ChooseMenuItem("FileNewWindow");
    Window1::Get().Show();
    EXPECT_EQ(host.calls, Split(opened + "|close: Window1|" + opened + "|show: Window1", "|"));
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
