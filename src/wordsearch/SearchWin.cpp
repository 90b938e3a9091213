#include "wordsearch/SearchWin.h"

#include "app/App.h"
#include "app/Window1.h"
#include "timedtext/save.h"
#include "timedtext/timecode.h"

SearchWin::SearchWin()
    : Window(
          App::Get(), kName,
          {.title = "Search Results", .width = 600, .height = 391, .maximizeButton = true, .visible = true}) {
  const Look blue{.color = 0x3B66C7};
  const Look grey{.color = 0x6F7573};
  Place({
      // control     name            L    T    W    H   tab  caption or text
      {searchTerm, "searchTerm", 20, 12, 560, 20, -1, "Showing 1135 results for search term: ", blue},
      {resultsList, "resultsList", 20, 44, 560, 295, 0},
      {Label1, "Label1", 20, 340, 313, 20, -1, "Click on each entry to view that part of the video.", grey},
      {closeBtn, "closeBtn", 364, 351, 88, 20, 1, "Close"},
      {saveBtn, "saveBtn", 464, 351, 116, 20, 2, "Save as File", {.startsCommand = true}},
  });
  resultsList.CellClick = [this](std::int64_t row, std::int64_t column, int x, int y) {
    return resultsList_CellClick(row, column, x, y);
  };
  closeBtn.Action = [this] { closeBtn_Action(); };
  saveBtn.Action = [this] { Owner().Command("Saving the results", [this] { saveBtn_Action(); }); };
}

void SearchWin::Event_Open() { App::Get().searchCount = "0"; }

void SearchWin::Event_Resizing() {
  resultsList.SetWidth(Width() - 40);
  resultsList.SetHeight(Height() - 100);
  closeBtn.SetTop(Height() - 40);
  saveBtn.SetTop(Height() - 40);
  saveBtn.SetLeft(Width() - 136);
  closeBtn.SetLeft(Width() - 236);
  Label1.SetTop(Height() - 51);
}

// A comma makes timecodeToSecs drop the fraction: the link takes whole seconds.
bool SearchWin::resultsList_CellClick(std::int64_t row, std::int64_t, int, int) {
  const std::string time = Replace(resultsList.Cell(row, 0), ".", ",");
  const App& app = App::Get();
  ShowURL(app.endpoints.WatchPage(app.vidCode) + "&t=" + timecodeToSecs(time));
  return false;
}

std::string SearchWin::ResultsBody() {
  std::string body;
  for (std::int64_t row = 0; row < resultsList.ListCount(); ++row) {
    AppendPieces(body, "[", resultsList.Cell(row, 0), "]\t", resultsList.Cell(row, 1), EndOfLine, EndOfLine);
    RuntimeBackgroundTask();
  }
  body = ReplaceAll(std::move(body), "  ", " ");
  body = ReplaceAll(std::move(body), "<p>", "");
  return ReplaceAll(std::move(body), "<P>", "");
}

void SearchWin::saveBtn_Action() {
  for (std::int64_t row = 0; row < resultsList.ListCount(); ++row) {
    resultsList.SetCell(row, 0, Replace(resultsList.Cell(row, 0), ",", "."));
    RuntimeBackgroundTask();
  }
  const std::string body = ResultsBody();
  const FolderItemPtr file = GetSaveFolderItem("TEXT", "search_results.txt");
  if (!file) return;
  const App& app = App::Get();
  const Window1* form = Window1::OpenOrNil();
  const std::string& term = form ? form->searchField.Text() : app.lastTerm;
  const std::string heading =
      "Search results for the term '" + term + "' in the video: " + app.endpoints.WatchPage(app.vidCode);
  const bool saved = SaveFile(file, [&](TextOutputStream& out) {
    out.WriteLine(heading);
    out.WriteLine("");
    out.WriteLine(body);
  });
  if (saved) file->Launch(true);
}

void SearchWin::closeBtn_Action() { Close(); }

std::string SearchWin::timecodeToSecs(const std::string& timecode) const {
  return ::timecodeToSecs(timecode);
}
