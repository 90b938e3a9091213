#include "timedtext/normalise.h"

#include <stdexcept>

#include "runtime/Text.h"
#include "runtime/byte_search.h"

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
constexpr std::string_view kRoot = "<transcript>";
constexpr std::string_view kRootEnd = "</transcript>";
constexpr std::string_view kStart = "<text start=\"";
constexpr std::string_view kDur = "\" dur=\"";
constexpr std::string_view kTagEnd = "\">";
constexpr std::string_view kTextEnd = "</text>";
constexpr std::string_view kApostrophe = "&amp;#39;";
constexpr std::string_view kQuote = "&amp;quot;";

enum class Reach { First, Every };

struct Step {
  Reach reach;
  std::string_view find;
  std::string_view put;
};

// In this order. The first two are four characters each, with a backslash: no line end.
constexpr Step kSteps[] = {
    {Reach::Every, "/\\r/", ""},         {Reach::Every, "/\\n/", ""},
    {Reach::First, kRoot, ""},           {Reach::First, kRootEnd, ""},
    {Reach::Every, kStart, ""},          {Reach::Every, kDur, kSeparator},
    {Reach::Every, kTagEnd, kSeparator}, {Reach::Every, kTextEnd, kSeparator},
    {Reach::First, kDeclaration, ""},    {Reach::Every, kApostrophe, "'"},
    {Reach::Every, kQuote, "\""},
};

// What a document's head alone is looked for.
bool IsForHead(const Step& step) { return step.find == kDeclaration || step.find == kRoot; }

std::string TakeSteps(std::string text, bool headIsTaken) {
  for (const Step& step : kSteps) {
    if (headIsTaken && IsForHead(step)) continue;
    text = step.reach == Reach::Every ? ReplaceAll(std::move(text), step.find, step.put)
                                      : Replace(std::move(text), step.find, step.put);
  }
  return text;
}

// The next separator at or behind from. Its bars are rare, so they are what is looked for.
std::size_t NextSeparator(std::string_view text, std::size_t from) {
  for (std::size_t bar = text.find('|', from + 1); bar != std::string_view::npos;
       bar = text.find('|', bar + 1)) {
    if (text.substr(bar - 1, kSeparator.size()) == kSeparator) return bar - 1;
  }
  return std::string_view::npos;
}

// Moves the cues behind a sound head to the front of the document, normalised, for as long as they keep
// to the pattern
//
//   cue = kStart S kDur D kTagEnd T kTextEnd
//
// where nothing in S, D and T is looked for by a step or by the split any more, since the head has had
// its own, but for the escaped quotation marks in T. What follows can be normalised apart: of all that
// the steps look for, nothing has a ">" but at its end, so nothing reaches across the end of a cue,
// whatever is removed behind it; and once that end is the blank of a separator, no step that is left
// but the head's looks for a blank or a bar.
class CueMover {
 public:
  explicit CueMover(std::string& document)
      : document_(document), view_(document), from_(kDeclaration.size() + kRoot.size()) {
    // A cue of three fields takes some hundred bytes; a list that turns out longer grows.
    ends_.reserve(document.size() / 32);
  }

  bool HasHead() const { return StandsAt(0, kDeclaration) && StandsAt(kDeclaration.size(), kRoot); }

  // False, with nothing changed, for a cue that is not of the pattern, or none.
  bool MoveCue() {
    if (!StandsAt(from_, kStart)) return false;
    const std::size_t start = from_ + kStart.size();
    const std::size_t startEnd = TimeEnd(start);
    if (!StandsAt(startEnd, kDur)) return false;
    const std::size_t dur = startEnd + kDur.size();
    const std::size_t durEnd = TimeEnd(dur);
    if (!StandsAt(durEnd, kTagEnd)) return false;
    const std::size_t text = durEnd + kTagEnd.size();
    const std::size_t textEnd = TextEnd(text);
    if (!StandsAt(textEnd, kTextEnd) || textEnd + kOvershoot > view_.size()) return false;
    Move(start, startEnd);
    Separate();
    Move(dur, durEnd);
    Separate();
    MoveText(text, textEnd);
    Separate();
    from_ = textEnd + kTextEnd.size();
    return true;
  }

  // Puts the normalised rest behind the cues, and ends.
  TimedTextFields Finish() {
    const std::string rest = TakeSteps(document_.substr(from_), true);
    document_.resize(to_);
    document_ += rest;
    return {std::move(document_), std::move(ends_)};
  }
  std::size_t Length() const { return to_; }

 private:
  bool StandsAt(std::size_t at, std::string_view text) const {
    return at <= view_.size() && view_.substr(at).starts_with(text);
  }
  std::size_t TimeEnd(std::size_t from) const { return FindFirstOf(view_, from, '"', '<', '&', '|', '\\'); }

  std::size_t TextEnd(std::size_t from) const {
    std::size_t at = FindFirstOf(view_, from, '<', '"', '|', '\\');
    while (at < view_.size() && MeansNothing(at)) at = FindFirstOf(view_, at + 1, '<', '"', '|', '\\');
    return at;
  }
  // One of the four that begins or continues no text that is looked for. "/\r/" and "/\n/" have their
  // backslash behind a slash, and a separator has its bars in a row.
  bool MeansNothing(std::size_t at) const {
    switch (view_[at]) {
      case '<':
        return !StandsAt(at, kTextEnd) && !StandsAt(at, kStart) && !StandsAt(at, kRootEnd);
      case '"':
        return !StandsAt(at, kTagEnd) && !StandsAt(at, kDur);
      case '|':
        return !StandsAt(at, "||");
      default:
        return view_[at - 1] != '/';
    }
  }

  // What is moved lies at least the head's length behind the place that it comes to.
  void Move(std::size_t from, std::size_t end) {
    CopyForward(document_.data() + to_, view_.data() + from, end - from);
    to_ += end - from;
  }
  void Put(std::string_view text) {
    text.copy(document_.data() + to_, text.size());
    to_ += text.size();
  }
  void Separate() {
    ends_.push_back(static_cast<std::uint32_t>(to_));
    Put(kSeparator);
  }
  void MoveText(std::size_t from, std::size_t end) {
    const std::string_view upToEnd = view_.substr(0, end);
    while (from < end) {
      const std::size_t entity = FindFirstOf(upToEnd, from, '&');
      Move(from, entity);
      from = entity;
      if (from < end) from += TakeEntity(from);
    }
  }
  // How many bytes it was.
  std::size_t TakeEntity(std::size_t at) {
    if (StandsAt(at, kApostrophe)) return Put("'"), kApostrophe.size();
    if (StandsAt(at, kQuote)) return Put("\""), kQuote.size();
    return Put("&"), 1;
  }

  std::string& document_;
  std::string_view view_;  // of it
  std::size_t from_;       // what is left begins here
  std::size_t to_ = 0;     // what is done ends here
  std::vector<std::uint32_t> ends_;
};

}  // namespace

std::string NormaliseStepByStep(std::string document) { return TakeSteps(std::move(document), false); }

TimedTextFields NormaliseTimedText(std::string document) {
  TimedTextFields fields;
  std::size_t from = 0;
  if (CueMover cues(document); cues.HasHead()) {
    while (cues.MoveCue()) continue;
    from = cues.Length();
    fields = cues.Finish();
  } else {
    fields.document = NormaliseStepByStep(std::move(document));
  }
  const std::string& text = fields.document;
  if (text.size() > UINT32_MAX) throw std::length_error("The document is too long.");
  for (std::size_t at = NextSeparator(text, from); at != std::string::npos; at = NextSeparator(text, from)) {
    fields.ends.push_back(static_cast<std::uint32_t>(at));
    from = at + kSeparator.size();
  }
  fields.ends.push_back(static_cast<std::uint32_t>(text.size()));
  return fields;
}
