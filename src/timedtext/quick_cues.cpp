#include "timedtext/quick_cues.h"

#include "runtime/byte_search.h"
#include "timedtext/marks.h"
#include "timedtext/normalise.h"

namespace {

using namespace marks;

// Moves cues one by one. In the S, D and T of a cue that keeps to the pattern, the steps and the split find
// nothing but the escaped quotation marks in T. What follows such a cue can be normalised on its own:
//   - of all texts that the steps look for, none has a ">" except at its end, so none reaches across the end
//     of a cue, whatever is removed after it;
//   - once that end is the blank of a separator, the only step left that looks for a blank or a bar is one of
//     the head's, which are done.
class CueMover {
 public:
  explicit CueMover(std::string& document)
      : document_(document), view_(document), from_(kDeclaration.size() + kRoot.size()) {
    // A cue of three fields takes about a hundred bytes; a longer list grows.
    ends_.reserve(document.size() / 32);
  }

  bool HasHead() const { return HasAt(0, kDeclaration) && HasAt(kDeclaration.size(), kRoot); }

  // False, with nothing changed, if no cue of the pattern follows.
  bool MoveCue() {
    if (!HasAt(from_, kStart)) return false;
    const std::size_t start = from_ + kStart.size();
    const std::size_t startEnd = TimeEnd(start);
    if (!HasAt(startEnd, kDur)) return false;
    const std::size_t dur = startEnd + kDur.size();
    const std::size_t durEnd = TimeEnd(dur);
    if (!HasAt(durEnd, kTagEnd)) return false;
    const std::size_t text = durEnd + kTagEnd.size();
    const std::size_t textEnd = TextEnd(text);
    if (!HasAt(textEnd, kTextEnd) || textEnd + kOvershoot > view_.size()) return false;
    Move(start, startEnd);
    Separate();
    Move(dur, durEnd);
    Separate();
    MoveText(text, textEnd);
    Separate();
    from_ = textEnd + kTextEnd.size();
    return true;
  }

  QuickCues Done() { return {from_, to_, std::move(ends_)}; }

 private:
  bool HasAt(std::size_t at, std::string_view text) const {
    return at <= view_.size() && view_.substr(at).starts_with(text);
  }
  std::size_t TimeEnd(std::size_t from) const { return FindFirstOf(view_, from, '"', '<', '&', '|', '\\'); }

  std::size_t TextEnd(std::size_t from) const {
    std::size_t at = FindFirstOf(view_, from, '<', '"', '|', '\\');
    while (at < view_.size() && MeansNothing(at)) at = FindFirstOf(view_, at + 1, '<', '"', '|', '\\');
    return at;
  }
  // Whether one of these four bytes begins or continues no text that is looked for. "/\r/" and "/\n/" have
  // their backslash after a slash, and a separator has its bars in a row.
  bool MeansNothing(std::size_t at) const {
    switch (view_[at]) {
      case '<':
        return !HasAt(at, kTextEnd) && !HasAt(at, kStart) && !HasAt(at, kRootEnd);
      case '"':
        return !HasAt(at, kTagEnd) && !HasAt(at, kDur);
      case '|':
        return !HasAt(at, "||");
      default:
        return view_[at - 1] != '/';
    }
  }

  // The source lies at least the head's length after the destination.
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
  // Gives the number of bytes that it took.
  std::size_t TakeEntity(std::size_t at) {
    if (HasAt(at, kApostrophe)) return Put("'"), kApostrophe.size();
    if (HasAt(at, kQuote)) return Put("\""), kQuote.size();
    return Put("&"), 1;
  }

  std::string& document_;
  std::string_view view_;  // of it
  std::size_t from_;       // where the rest begins
  std::size_t to_ = 0;     // where the result ends
  std::vector<std::uint32_t> ends_;
};

}  // namespace

QuickCues MoveQuickCues(std::string& document) {
  CueMover cues(document);
  if (!cues.HasHead()) return {};
  while (cues.MoveCue()) continue;
  return cues.Done();
}
