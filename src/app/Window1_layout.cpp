// The layout of the main form.

#include "app/App.h"
#include "app/Window1.h"
#include "app/aboutWin.h"
#include "app/pasted_link.h"

namespace {
constexpr std::uint32_t kGrey = 0x6F7573;
}

Window1::Window1()
    : Window(App::Get(), kName,
             {.title = "Ravelyn for YouTube", .width = 562, .height = 479, .menuBar = true}) {
  const std::string sample = App::Get().endpoints.WatchPage(App::Get().endpoints.SampleCode);
  const Look heading{.fontSize = 14};
  const Look hint{.fontSize = 11, .color = kGrey, .selectable = true};
  const Look command{.defaultButton = true, .startsCommand = true};
  const Look scratch{.multiline = true, .spoken = "Document of the last command"};
  const Look picture{.spoken = "About Ravelyn"};
  const Look grey{.color = kGrey};
  Place({
      // control      name             L    T    W    H   tab  caption or text
      {PushButton1, "PushButton1", 307, 432, 228, 20, 0, "Download", command},
      {Label1, "Label1", 30, 103, 280, 20, 2, "2. Choose an available language:", heading},
      {Label2, "Label2", 30, 20, 305, 23, 3, "1. Paste in YouTube URL and click Search:", heading},
      {TextField1, "TextField1", 30, 46, 404, 22, 4, "", {.placeholder = sample}},
      {PushButton2, "PushButton2", 446, 47, 89, 20, 6, "Search", command},
      {XMLList, "XMLList", 30, 558, 934, 272, 7},
      {TextArea1, "TextArea1", 689, 516, 489, 451, 8, "", scratch},
      {Listbox1, "Listbox1", 30, 135, 250, 226, 9},
      {paragraphBox, "paragraphBox", 340, 205, 141, 20, 11, "Paragraph Form"},
      {Label3, "Label3", 306, 103, 236, 20, 12, "3. Choose type of file to download:", heading},
      {lineBox, "lineBox", 340, 228, 199, 20, 13, "Line-by-line"},
      {Label4, "Label4", 30, 71, 401, 20, 16, "example: " + sample, hint},
      {Label6, "Label6", 322, 22, 178, 20, 18, "(requires internet connection)", hint},
      {timecodeBox, "timecodeBox", 362, 251, 135, 20, 10, "Include Timecode"},
      {Canvas1, "Canvas1", 368, 279, 100, 100, 19, Ravelyn100, picture},
      {openBox, "openBox", 332, 406, 199, 20, 20, "Open File(s) After Saving"},
      {TextBox, "TextBox", 319, 182, 199, 20, 23, "Text Transcript"},
      {SRTBox, "SRTBox", 319, 135, 100, 20, 24, "SRT File"},
      {listBox2, "listBox2", -86, 516, 934, 272, 25},
      {searchField, "searchField", 30, 397, 250, 22, 26},
      {PushButton3, "PushButton3", 30, 431, 135, 20, 27, "Word Search", command},
      {Label7, "Label7", 30, 375, 218, 20, 28, "Search for a word or phrase in this video:", grey},
      {WebVTTBox, "WebVTTBox", 319, 159, 202, 20, 31, "WebVTT File"},
  });
  Place({
      // line     name       X1   Y1   X2   Y2
      {Line4, "Line4", 307, 144, 307, 169, -1, "", grey},  // file type bracket
      {Line5, "Line5", 307, 143, 316, 143, -1, "", grey},
      {Line6, "Line6", 308, 169, 317, 169, -1, "", grey},
      {Line7, "Line7", 307, 167, 307, 192, -1, "", grey},
      {Line8, "Line8", 308, 192, 317, 192, -1, "", grey},
      {Line1, "Line1", 328, 212, 328, 237, -1, "", grey},  // text form bracket
      {Line2, "Line2", 329, 215, 338, 215, -1, "", grey},
      {Line3, "Line3", 329, 237, 338, 237, -1, "", grey},
      {Line9, "Line9", 328, 201, 328, 226, -1, "", grey},
      {Line10, "Line10", 350, 246, 350, 261, -1, "", grey},  // timecode bracket
      {Line11, "Line11", 350, 261, 359, 261, -1, "", grey},
  });
  Gather({
      {{&Label2, &Label6, &TextField1, &PushButton2, &Label4}},
      {{&Label1, &Listbox1}},
      {{&Label3, &SRTBox, &WebVTTBox, &TextBox, &paragraphBox, &lineBox, &timecodeBox, &openBox,
        &PushButton1}},
  });
  XMLList.SetVisible(false);
  listBox2.SetVisible(false);
  openBox.StartWith(true);
  for (CheckBox* box : {&paragraphBox, &lineBox, &timecodeBox}) box->SetEnabled(false);
  ShowTextFormBracket(false);
  ShowTimecodeBracket(false);
  TextField1.Arriving = [](const std::string& text) { return PastedLink(text, App::Get().endpoints); };
  BindActions();
  AddMenuHandlers();
}

void Window1::BindActions() {
  const auto bindCommand = [this](PushButton& button, const char* what, void (Window1::*run)()) {
    button.Action = [this, what, run] { Owner().Command(what, [this, run] { (this->*run)(); }); };
  };
  bindCommand(PushButton1, "Downloading captions", &Window1::PushButton1_Action);
  bindCommand(PushButton2, "Looking for captions", &Window1::PushButton2_Action);
  bindCommand(PushButton3, "Searching the captions", &Window1::PushButton3_Action);
  paragraphBox.Action = [this] { paragraphBox_Action(); };
  lineBox.Action = [this] { lineBox_Action(); };
  timecodeBox.Action = [this] { timecodeBox_Action(); };
  openBox.Action = [this] { openBox_Action(); };
  TextBox.Action = [this] { TextBox_Action(); };
  SRTBox.Action = [this] { SRTBox_Action(); };
  WebVTTBox.Action = [this] { WebVTTBox_Action(); };
  Canvas1.MouseDown = [this](int x, int y) { return Canvas1_MouseDown(x, y); };
}
