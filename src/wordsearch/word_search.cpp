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

// What one run shows: its hits, the last rows of the results window. That window is the same to the end
// of the run, since its closing ends the command.
class Run {
 public:
  std::int64_t Hits() const { return hits_; }
  void AddHit(const std::string& start, const std::string& text) {
    window_ = &SearchWin::Get();
    window_->resultsList.AddRow(start);
    window_->resultsList.SetCell(window_->resultsList.LastIndex(), 1, text);
    ++hits_;
  }
  // Removes the rows, or the window that the run has made. The latter ends the command, which has no more
  // left to do than to say why.
  void TakeBack() {
    if (hits_ == 0) return;
    wasOpen_ ? window_->resultsList.RemoveRowsFrom(before_) : window_->Close();
  }
  // Nothing where no row of the run stands, or those of a later run follow them.
  void ShowCount(const std::string& term) const {
    const bool open = hits_ > 0 && SearchWin::OpenOrNil() == window_;
    if (!open || window_->resultsList.ListCount() != before_ + hits_) return;
    window_->searchTerm.SetText("Displaying " + Str(hits_) + " results for search term: \"" + term + "\".");
  }

 private:
  SearchWin* window_ = SearchWin::OpenOrNil();
  const bool wasOpen_ = window_;
  const std::int64_t before_ = wasOpen_ ? window_->resultsList.ListCount() : 0;
  std::int64_t hits_ = 0;
};

std::string Quoted(const std::string& term) { return "The term \"" + term + "\""; }

// Reports a term that is no regular expression; false then.
bool CompileOrReport(RegEx& term) {
  try {
    term.Compile();
    return true;
  } catch (const RegExSearchPatternException& e) {
    MsgBox(Quoted(term.SearchPattern) + " is not a valid search expression: at character " +
           Str(e.Position()) + ", " + e.what() + ".");
    return false;
  }
}

RegEx TermOf(const Window1& form) {
  RegEx term;
  term.SearchPattern = form.searchField.Text();
  return term;
}

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
  if (RegEx term = TermOf(*this); !CompileOrReport(term)) return;
  Owner().EndHandlerWith(SearchWin::kName);
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

  RegEx term = TermOf(*this);
  if (!CompileOrReport(term)) return false;  // it was changed meanwhile
  App& app = App::Get();
  app.lastTerm = term.SearchPattern;
  Run run;
  std::string room;
  try {
    for (std::size_t i = 0; i < track->Cues(); ++i) {
      const std::string_view text = track->Text(i).In(room);
      if (term.Search(text)) run.AddHit(TextOf(starts.WithPointAt(i)), std::string(text));
      app.searchCount = Str(run.Hits());
      RuntimeBackgroundTask();
    }
  } catch (const RegExMatchLimitException& e) {
    run.TakeBack();
    MsgBox(Quoted(term.SearchPattern) + " could not be searched for: " + e.what() + ".");
    return false;
  } catch (...) {
    run.ShowCount(searchField.Text());
    throw;
  }

  ++app.progress.searched;
  app.progress.hits += run.Hits();
  app.progress.withHits += run.Hits() > 0;
  if (run.Hits() < 1) {
    MsgBox(Quoted(searchField.Text()) + " could not be found.");
    return true;
  }
  SearchWin::Get().Show();
  run.ShowCount(searchField.Text());
  return true;
}
