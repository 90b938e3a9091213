// The windows as they start, and the option logic of the main form.

#include <gtest/gtest.h>

#include "app/MainMenuBar.h"
#include "app/aboutWin.h"
#include "support/Program.h"
#include "wordsearch/SearchWin.h"

namespace {

using Lines = std::vector<std::string>;

const char* const kKinds[] = {"PushButton", "BevelButton", "CheckBox", "RadioButton", "Label",
                              "TextField",  "TextArea",    "Listbox",  "Canvas",      "Line"};

std::string OwnValues(const Control& c) {
  switch (c.Kind()) {
    case ControlKind::CheckBox:
      return static_cast<const CheckBox&>(c).Caption() +
             (static_cast<const CheckBox&>(c).Value() ? " on" : " off");
    case ControlKind::RadioButton:
      return static_cast<const RadioButton&>(c).Caption() +
             (static_cast<const RadioButton&>(c).Value() ? " on" : " off");
    case ControlKind::PushButton:
    case ControlKind::BevelButton:
      return static_cast<const Button&>(c).Caption();
    case ControlKind::Label:
      return static_cast<const Label&>(c).Text();
    case ControlKind::TextField:
      return static_cast<const TextField&>(c).Text();
    case ControlKind::TextArea:
      return static_cast<const TextArea&>(c).Text();
    case ControlKind::Canvas:
      return static_cast<const Canvas&>(c).Backdrop();
    case ControlKind::Listbox: {
      const auto& list = static_cast<const Listbox&>(c);
      return std::to_string(list.Columns().columns) + " columns \"" + list.Columns().columnWidths +
             "\" grid " + std::to_string(list.Columns().gridHorizontal) +
             std::to_string(list.Columns().gridVertical) +
             (list.Columns().severalSelectable ? " several" : "") + (list.ListCount() ? " filled" : "");
    }
    case ControlKind::Line:
      return "";
  }
  return "";
}

// Name, kind, place, tab index, state, look and own values, in this order.
std::string Row(const Control& c) {
  const auto number = [](int n) { return " " + std::to_string(n); };
  const Look& look = c.LookOf();
  std::string row = c.Name() + " " + kKinds[static_cast<int>(c.Kind())] + number(c.Left()) + number(c.Top()) +
                    number(c.Width()) + number(c.Height());
  if (c.TabIndex() >= 0) row += " tab" + number(c.TabIndex());
  if (!c.Enabled()) row += " disabled";
  if (!c.Visible()) row += " hidden";
  if (look.fontSize) row += " size" + number(look.fontSize);
  if (look.color) row += " #" + Hex(*look.color);
  for (const auto& [set, word] : {std::pair{look.italic, " italic"},
                                  {look.selectable, " selectable"},
                                  {look.multiline, " multiline"},
                                  {look.defaultButton, " default"},
                                  {look.spellCheck, " spelling"},
                                  {look.align == Align::Center, " centred"}})
    if (set) row += word;
  const std::string own = OwnValues(c);
  return own.empty() ? row : row + ": " + own;
}

Lines Rows(const Window& window) {
  const WindowFrame& f = window.Frame();
  Lines rows = {f.title + " " + std::to_string(window.Width()) + " " + std::to_string(window.Height())};
  EXPECT_EQ((std::vector{f.minWidth, f.minHeight, f.maxWidth, f.maxHeight}),
            (std::vector{64, 64, 32000, 32000}));
  EXPECT_TRUE(f.closeButton && f.minimizeButton && f.resizable && f.liveResize && !f.fullScreenButton);
  for (const Control* control : window.Controls()) rows.push_back(Row(*control));
  return rows;
}

std::string OnOff(const CheckBox& box) {
  return std::string(box.Value() ? "on" : "off") + (box.Enabled() ? "" : "/dis");
}

// Seven words: the file type, the three boxes, the two brackets; the caption and the strings behind them.
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

TEST(Layout, OfTheMainForm) {
  Program program;
  EXPECT_EQ(
      Rows(program.Form()),
      (Lines{
          "Ravelyn for YouTube 562 479",
          "PushButton1 PushButton 307 432 228 20 tab 0 default: Download",
          "Label1 Label 30 103 280 20 tab 2 size 14: 2. Choose an available language:",
          "Label2 Label 30 20 305 23 tab 3 size 14: 1. Paste in YouTube URL and click Search:",
          "TextField1 TextField 30 46 404 22 tab 4",
          "PushButton2 PushButton 446 47 89 20 tab 6 default: Search",
          "XMLList Listbox 30 558 934 272 tab 7 hidden: 1 columns \"\" grid 00",
          "TextArea1 TextArea 689 516 489 451 tab 8 multiline spelling",
          "Listbox1 Listbox 30 135 250 226 tab 9: 2 columns \"250\" grid 23 several",
          "paragraphBox CheckBox 340 205 141 20 tab 11 disabled: Paragraph Form off",
          "Label3 Label 306 103 236 20 tab 12 size 14: 3. Choose type of file to download:",
          "lineBox CheckBox 340 228 199 20 tab 13 disabled: Line-by-line off",
          "Label4 Label 30 71 401 20 tab 16 size 11 #6F7573 selectable: example: "
          "https://www.youtube.com/watch?v=hB7rV2kQx0w",
          "Label6 Label 322 22 178 20 tab 18 size 11 #6F7573 selectable: (requires internet connection)",
          "timecodeBox CheckBox 362 251 135 20 tab 10 disabled: Include Timecode off",
          "Canvas1 Canvas 368 279 100 100 tab 19: Ravelyn1001.png",
          "openBox CheckBox 332 406 199 20 tab 20: Open File(s) After Saving on",
          "TextBox RadioButton 319 182 199 20 tab 23: Text Transcript off",
          "SRTBox RadioButton 319 135 100 20 tab 24: SRT File off",
          "listBox2 Listbox -86 516 934 272 tab 25 hidden: 4 columns \"\" grid 00",
          "searchField TextField 30 397 250 22 tab 26",
          "PushButton3 PushButton 30 431 135 20 tab 27 default: Word Search",
          "Label7 Label 30 375 218 20 tab 28 #6F7573: Search for a word or phrase in this video:",
          "WebVTTBox RadioButton 319 159 202 20 tab 31: WebVTT File off",
          "Line1 Line 328 212 328 237 hidden #6F7573",
          "Line2 Line 329 215 338 215 hidden #6F7573",
          "Line3 Line 329 237 338 237 hidden #6F7573",
          "Line4 Line 307 144 307 169 #6F7573",
          "Line5 Line 307 143 316 143 #6F7573",
          "Line6 Line 308 169 317 169 #6F7573",
          "Line7 Line 307 167 307 192 #6F7573",
          "Line8 Line 308 192 317 192 #6F7573",
          "Line9 Line 328 201 328 226 hidden #6F7573",
          "Line10 Line 350 246 350 261 hidden #6F7573",
          "Line11 Line 350 261 359 261 hidden #6F7573",
      }));
  EXPECT_FALSE(program.Form().Frame().maximizeButton);
  EXPECT_TRUE(program.Form().Visible());
}

TEST(Layout, OfTheResultsWindowAndWhereResizingMovesIt) {
  Program program;
  SearchWin& window = SearchWin::Get();
  EXPECT_EQ(program.Calls(), Lines{"show: SearchWin"});
  EXPECT_TRUE(window.Frame().maximizeButton);
  EXPECT_EQ(Rows(window),
            (Lines{"Search Results 600 391",
                   "searchTerm Label 20 12 560 20 #3B66C7: Showing 1135 results for search term: ",
                   "resultsList Listbox 20 44 560 295 tab 0: 2 columns \"100,*\" grid 23",
                   "Label1 Label 20 340 313 20 #6F7573: Click on each entry to view that part of the video.",
                   "closeBtn PushButton 364 351 88 20 tab 1: Close",
                   "saveBtn PushButton 464 351 116 20 tab 2: Save as File"}));
  window.PersonResizes(700, 391);
  window.PersonResizes(600, 391);
  EXPECT_EQ(window.resultsList.Height(), 291);  // the start is 295
  window.PersonResizes(800, 500);
  EXPECT_EQ(Rows(window),
            (Lines{"Search Results 800 500",
                   "searchTerm Label 20 12 560 20 #3B66C7: Showing 1135 results for search term: ",
                   "resultsList Listbox 20 44 760 400 tab 0: 2 columns \"100,*\" grid 23",
                   "Label1 Label 20 449 313 20 #6F7573: Click on each entry to view that part of the video.",
                   "closeBtn PushButton 564 460 88 20 tab 1: Close",
                   "saveBtn PushButton 664 460 116 20 tab 2: Save as File"}));
  window.PersonResizes(1, 1);  // no smaller than 64 by 64
  EXPECT_EQ(window.resultsList.Width(), 24);
  EXPECT_EQ(window.saveBtn.Left(), -72);
}

TEST(Layout, OfTheAboutWindow) {
  Program program;
  EXPECT_EQ(
      Rows(aboutWin::Get()),
      (Lines{"About Ravelyn 396 706", "Canvas1 Canvas 70 0 353 268: Ravelyn250.png",
             "Label2 Label 85 237 225 41 size 24 #697AE9 centred: Ravelyn",
             "Label3 Label 127 265 141 32 size 18 #943533 italic centred: for YouTube",
             "Label4 Label 276 272 100 20: version 2.7",
             "Label1 Label 17 296 356 356 multiline: Ravelyn is a tool to make it easy to retrieve "
             "transcripts from captioned YouTube videos. When you insert a YouTube video URL and hit the "
             "Search button, it will provide you with a list of transcripts in different languages that "
             "are available for that video to download. They can be saved as paragraph text or "
             "line-by-line with or without timecode, or they can be saved as SRT or VTT caption files."
             "\r\rIt can also do a word search of any captioned video. It will provide a list of search "
             "results that link directly to the point in the YouTube video where the search term is "
             "mentioned.\r\rHope this makes your life a little better!",
             "BevelButton1 BevelButton 300 664 73 22 tab 0: Close"}));
  EXPECT_FALSE(aboutWin::Get().Frame().maximizeButton);
}

// Each row goes on from the one before, in the state that it left.
TEST(Options, KeepEachOtherInStepAfterEachClick) {
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
      {"lineBox", "text off off on shown shown" + text + "Text true false false false"},  // the box stays on
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

TEST(Options, AreSetByCodeAsByAPersonButOnlyWhenTheyChange) {
  Program program;
  Window1& form = program.Form();
  form.lineBox.SetValue(true);  // disabled, yet its handler runs
  EXPECT_EQ(OptionState(program),
            "none off/dis on/dis off hidden shown | Download | true true false false true");
  form.TextBox.SetValue(true);
  form.PushButton1.SetCaption("mine");
  form.TextBox.SetValue(true);
  form.openBox.SetValue(true);
  form.TextBox.SetValue(false);  // going off raises nothing
  EXPECT_EQ(OptionState(program), "none off on off shown shown | mine | Text true false false true");
}

TEST(Probe, WarnsOfAFailingAddressOnceForEachForm) {
  for (const auto& [address, words] :
       {std::pair{"127.0.0.1", Lines{"show: Window1"}},
        std::pair{"240.0.0.1",
                  Lines{"show: Window1",
                        "message: Ravelyn cannot work without an Internet connection. Please check "
                        "your connection prior to continuing."}}}) {
    FakePlatform host;
    TemporaryFolder prefs;
    host.prefsFolder = prefs.Path();
    Endpoints endpoints;
    endpoints.ProbeAddress = address;
    App app(host, endpoints);
    app.Start();
    EXPECT_EQ(host.calls, words);
    app.FindWindow("Window1")->PersonCloses();
    host.calls.clear();
    app.ChooseMenuItem("FileNewWindow");
    EXPECT_EQ(host.calls, words);
    Window1::Get().Show();
    EXPECT_EQ(host.calls.size(), words.size() + 1);
  }
}

TEST(Menus, StandInTheirOrder) {
  Lines rows;
  for (const Menu& menu : MainMenuBar().Menus) {
    rows.push_back(menu.Name + " " + menu.Caption);
    for (const MenuItem& item : menu.Items) {
      rows.push_back(item.Name + " " + item.Caption + " " + item.Shortcut + (item.Quits ? " quits" : ""));
      EXPECT_TRUE(item.Visible && item.AutoEnable) << item.Name;
    }
  }
  EXPECT_EQ(rows, (Lines{"FileMenu &File", "FileQuit &Quit Cmd+Q quits", "FileNewWindow New Window Cmd+N",
                         "FileAboutRavelyn About Ravelyn ", "FileHelp Help ", "EditMenu &Edit",
                         "EditUndo &Undo Cmd+Z", "EditSeparator1 - ", "EditCut Cu&t Cmd+X",
                         "EditCopy &Copy Cmd+C", "EditPaste &Paste Cmd+V", "EditClear &Delete ",
                         "EditSeparator2 - ", "EditSelectAll Select &All Cmd+A"}));
}
