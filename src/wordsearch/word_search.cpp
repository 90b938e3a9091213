#include "wordsearch/word_search.h"

#include "app/App.h"
#include "app/Window1.h"
#include "runtime/Numbers.h"
#include "runtime/RegEx.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/fetch.h"
#include "wordsearch/SearchWin.h"

namespace {

// The hits of one run (one track), which are the last rows of the results window. The window stays the same
// throughout the run, since closing it ends the command.
class Run {
 public:
  std::int64_t Hits() const { return hits_; }
  void AddHit(const std::string& start, const std::string& text) {
    window_ = &SearchWin::Get();
    window_->resultsList.AddRow(start);
    window_->resultsList.SetCell(window_->resultsList.LastIndex(), 1, text);
    ++hits_;
  }
  // Removes the rows, or the window if the run has created it. Closing it ends the command, which has only
  // its message left to show.
  void TakeBack() {
    if (hits_ == 0) return;
    wasOpen_ ? window_->resultsList.RemoveRowsFrom(before_) : window_->Close();
  }
  // Does nothing if the run has no rows, or if rows of a later run follow them.
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

// Shows a message and returns false if the term is no valid regular expression.
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

TimecodeList StartsOf(const TimedText& track) {
  TimecodeList starts;
  starts.Reserve(track.Starts());
  for (std::size_t i = 0; i < track.Starts(); ++i) {
    starts.AppendStart(track.Times(i));
    RuntimeBackgroundTask();
  }
  return starts;
}

// The first cue from `cue` on that has the term, with its words in `text`; Cues() if there is none. Yields
// after each cue without a hit.
std::size_t NextHit(RegEx& term, const TimedText& track, std::size_t cue, std::string& text) {
  std::string buffer;
  for (; cue < track.Cues(); ++cue) {
    const std::string_view words = track.Text(cue).In(buffer);
    if (term.Search(words)) return text = words, cue;
    RuntimeBackgroundTask();
  }
  return cue;
}

// Shows each hit as it is found. A track without cues does not change the count.
void ShowHits(Run& run, RegEx& term, const TimedText& track, const TimecodeList& starts) {
  App& app = App::Get();
  if (track.Cues() > 0) app.searchCount = "0";
  std::string text;
  for (std::size_t cue = 0; (cue = NextHit(term, track, cue, text)) < track.Cues(); ++cue) {
    run.AddHit(TextOf(starts.WithPointAt(cue)), text);
    app.searchCount = Str(run.Hits());
    RuntimeBackgroundTask();
  }
}

}  // namespace

void SearchWords(Window1& form) {
  App& app = App::Get();
  if (form.TextField1.Text().empty()) {
    MsgBox(
        "You must paste the URL of your YouTube movie into the first form field before you can do a word search.");
    app.CheckEnded();  // the form may have closed during the message
    return form.TextField1.SetFocus();
  }
  if (form.Listbox1.ListCount() == 0) return MsgBox("There are no selected languages to retrieve.");
  if (form.Listbox1.SelCount() == 0) return MsgBox("You must choose a language to do a word search on.");
  if (RegEx term = TermOf(form); !CompileOrReport(term)) return;
  app.EndHandlerWith(SearchWin::kName);
  for (std::int64_t row = 0; row < form.Listbox1.ListCount(); ++row) {
    if (form.Listbox1.Selected(row) && !form.DoWordSearch(row)) return;
    RuntimeBackgroundTask();
  }
}

bool SearchTrack(Window1& form, std::int64_t row) {
  const auto track = FetchTimedText(form, row);
  if (!track) return true;
  const TimecodeList starts = StartsOf(*track);
  RegEx term = TermOf(form);
  if (!CompileOrReport(term)) return false;  // the user has changed it since
  App& app = App::Get();
  app.lastTerm = term.SearchPattern;
  Run run;
  try {
    ShowHits(run, term, *track, starts);
  } catch (const RegExMatchLimitException& e) {
    run.TakeBack();
    MsgBox(Quoted(term.SearchPattern) + " could not be searched for: " + e.what() + ".");
    return false;
  } catch (...) {
    run.ShowCount(form.searchField.Text());
    throw;
  }

  ++app.progress.searched;
  app.progress.hits += run.Hits();
  app.progress.withHits += run.Hits() > 0;
  if (run.Hits() < 1) {
    MsgBox(Quoted(form.searchField.Text()) + " could not be found.");
    return true;
  }
  SearchWin::Get().Show();
  run.ShowCount(form.searchField.Text());
  return true;
}
