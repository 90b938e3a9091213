// The word search: tests a term against every cue of the selected tracks by itself. The term is a
// regular expression, taken as it stands in the field; case doesn't matter.

#include "app/App.h"
#include "app/Window1.h"
#include "runtime/Numbers.h"
#include "runtime/RegEx.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/TimedText.h"
#include "wordsearch/SearchWin.h"

namespace {

SearchWin* OpenResults() { return static_cast<SearchWin*>(App::Get().FindWindow(SearchWin::kName)); }

// Takes back what one run has shown: its rows, or the window that it made. The one that was open
// before may have been closed meanwhile; it is not destroyed before the command has returned.
class RunRows {
 public:
  RunRows() : window_(OpenResults()), before_(window_ ? window_->resultsList.ListCount() : 0) {}
  void TakeBack() const {
    SearchWin* open = OpenResults();
    if (!open) return;
    open == window_ ? open->resultsList.RemoveRowsFrom(before_) : open->Close();
  }

 private:
  const SearchWin* window_;
  std::int64_t before_;
};

void AddHit(const std::string& start, const std::string& text) {
  Listbox& results = SearchWin::Get().resultsList;
  results.AddRow(start);
  results.SetCell(results.LastIndex(), 1, text);
}

std::string Quoted(const std::string& term) { return "The term \"" + term + "\""; }

}  // namespace

void Window1::PushButton3_Action() {
  if (TextField1.Text().empty()) {
    MsgBox(
        "You must paste the URL of your YouTube movie into the first form field before you can do a word "
        "search.");
    Owner().CheckEnded();  // the form may have gone behind the message
    return TextField1.SetFocus();
  }
  if (Listbox1.ListCount() == 0) return MsgBox("There are no selected languages to retrieve.");
  if (Listbox1.SelCount() == 0) return MsgBox("You must choose a language to do a word search on.");
  for (std::int64_t row = 0; row < Listbox1.ListCount(); ++row) {
    if (Listbox1.Selected(row) && !DoWordSearch(row)) return;
    RuntimeBackgroundTask();
  }
}

bool Window1::DoWordSearch(std::int64_t row) {
  auto track = FetchTimedText(*this, row);
  if (!track) return true;
  TimecodeList starts;
  starts.Reserve(track->Starts());
  for (std::size_t i = 0; i < track->Starts(); ++i) {
    starts.AppendStart(track->Times(i));
    RuntimeBackgroundTask();
  }

  const RunRows rows;
  RegEx term;
  term.SearchPattern = searchField.Text();
  std::int64_t hits = 0;
  std::string room;
  try {
    for (std::size_t i = 0; i < track->Cues(); ++i) {
      const std::string_view text = track->Text(i).In(room);
      if (term.Search(text)) {
        ++hits;
        AddHit(TextOf(starts.WithPointAt(i)), std::string(text));
      }
      App::Get().searchCount = Str(hits);
      RuntimeBackgroundTask();
    }
  } catch (const RegExSearchPatternException& e) {
    MsgBox(Quoted(term.SearchPattern) + " is not a valid search expression: at character " +
           Str(e.Position()) + ", " + e.what() + ".");
    return false;
  } catch (const RegExMatchLimitException& e) {
    rows.TakeBack();
    MsgBox(Quoted(term.SearchPattern) + " could not be searched for: " + e.what() + ".");
    return false;
  }

  if (hits < 1) {
    MsgBox(Quoted(searchField.Text()) + " could not be found.");
    return true;
  }
  SearchWin& window = SearchWin::Get();
  window.Show();
  window.searchTerm.SetText("Displaying " + App::Get().searchCount + " results for search term: \"" +
                            searchField.Text() + "\".");
  return true;
}
