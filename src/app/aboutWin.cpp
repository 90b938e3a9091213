#include "app/aboutWin.h"

#include "app/App.h"

namespace {

// Carriage returns end the lines of a label.
constexpr char kDescription[] =
    "Ravelyn is a tool to make it easy to retrieve transcripts from captioned YouTube videos. When you insert a YouTube video URL and hit the Search button, it will provide you with a list of transcripts in different languages that are available for that video to download. They can be saved as paragraph text or line-by-line with or without timecode, or they can be saved as SRT or VTT caption files.\r\r"
    "It can also do a word search of any captioned video. It will provide a list of search results that link directly to the point in the YouTube video where the search term is mentioned.\r\r"
    "Hope this makes your life a little better!";

}  // namespace

aboutWin::aboutWin()
    : Window(App::Get(), "aboutWin",
             {.title = "About Ravelyn", .width = 396, .height = 706, .dialog = true}) {
  const Look name{.fontSize = 24, .color = 0x697AE9, .align = Align::Center};
  const Look purpose{.fontSize = 18, .italic = true, .color = 0x943533, .align = Align::Center};
  Place({
      // control     name            L    T    W    H   tab  picture, text or caption
      {Canvas1, "Canvas1", 70, 0, 353, 268, -1, Ravelyn250, {.spoken = "Ravelyn"}},
      {Label2, "Label2", 85, 237, 225, 41, -1, "Ravelyn", name},
      {Label3, "Label3", 127, 265, 141, 32, -1, "for YouTube", purpose},
      {Label4, "Label4", 276, 272, 100, 20, -1, std::string("version ") + kVersion},
      {Label1, "Label1", 17, 296, 356, 356, -1, kDescription, {.multiline = true}},
      {BevelButton1, "BevelButton1", 300, 664, 73, 22, 0, "Close"},
  });
  BevelButton1.Action = [this] { BevelButton1_Action(); };
}

void aboutWin::BevelButton1_Action() { Close(); }
