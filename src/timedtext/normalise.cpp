#include "timedtext/normalise.h"

#include <cstring>
#include <optional>

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

// One pass over what follows the root's tag. Why it gives what the steps give:
//  - what is put in (separators, quotation marks, nothing) never makes one of the texts that later
//    steps look for, but for the removal of kStart, which could join what stands on its two sides;
//    behind a ">" it can't, since ">" is nowhere but at the end of a text that is looked for;
//  - texts that overlap share one quotation mark, and the leftmost is also the one of the earlier
//    step; kDur and kTagEnd begin alike, but no place holds both;
//  - the root's end tag is the last thing of the document, so its removal joins nothing.
class OnePass {
 public:
  explicit OnePass(std::string_view rest)
      : rest_(rest), begin_(rest.data()), out_(rest.size() + kSlack, '\0') {}

  // nullopt where this document can't be done in one pass.
  std::optional<std::string> Run() {
    while (PassPlainBytes()) {
      const char first = rest_.front();
      const bool taken = first == '<' ? TakeTag() : first == '"' ? TakeMark() : TakeEntity();
      if (!taken) return std::nullopt;
    }
    if (!rest_.empty()) return std::nullopt;
    out_.resize(length_);
    return std::move(out_);
  }

 private:
  // A document of nothing but separators grows; one that is sound shrinks with its first cue.
  static constexpr std::size_t kSlack = 64;
  static constexpr std::size_t kRun = 32;

  // False at the end, and where there is no room for what comes.
  bool PassPlainBytes() {
    const std::size_t length = FindFirstOfThree(rest_, 0, '<', '"', '&');
    if (length_ + length + kSeparator.size() > out_.size()) return false;
    Keep(length);
    return !rest_.empty();
  }

  void Put(std::string_view bytes) {
    std::memcpy(out_.data() + length_, bytes.data(), bytes.size());
    length_ += bytes.size();
  }

  // Takes the first bytes of the rest as they are. A run of fixed length, where there is room for it, is
  // quicker to copy than the short ones between two marks; what is too much is written over.
  void Keep(std::size_t length) {
    if (length <= kRun && rest_.size() >= kRun && length_ + kRun <= out_.size()) {
      std::memcpy(out_.data() + length_, rest_.data(), kRun);
      length_ += length;
    } else {
      Put(rest_.substr(0, length));
    }
    rest_.remove_prefix(length);
  }

  bool Take(std::string_view found, std::string_view put) {
    if (!rest_.starts_with(found)) return false;
    Put(put);
    rest_.remove_prefix(found.size());
    return true;
  }

  bool KeepByte() {
    Keep(1);
    return true;
  }

  bool TakeTag() {
    const bool behindTag = rest_.data() == begin_ || rest_.data()[-1] == '>';
    if (Take(kTextEnd, kSeparator)) return true;
    if (rest_.starts_with(kStart)) return behindTag && Take(kStart, "");
    if (rest_ == kRootEnd) return Take(kRootEnd, "");
    return !rest_.starts_with(kRootEnd) && KeepByte();
  }

  bool TakeMark() { return Take(kTagEnd, kSeparator) || Take(kDur, kSeparator) || KeepByte(); }

  bool TakeEntity() { return Take(kApostrophe, "'") || Take(kQuote, "\"") || KeepByte(); }

  std::string_view rest_;
  const char* begin_;
  std::string out_;
  std::size_t length_ = 0;  // of out_ that is filled
};

}  // namespace

std::string NormaliseStepByStep(std::string document) {
  for (const Step& step : kSteps) {
    document = step.reach == Reach::Every ? ReplaceAll(std::move(document), step.find, step.put)
                                          : Replace(std::move(document), step.find, step.put);
  }
  return document;
}

std::string NormaliseTimedText(std::string document) {
  std::string_view rest = document;
  const bool isSound = rest.starts_with(kDeclaration) &&
                       rest.substr(kDeclaration.size()).starts_with(kRoot) &&
                       rest.find('\\') == std::string_view::npos;
  if (isSound) {
    rest.remove_prefix(kDeclaration.size() + kRoot.size());
    if (auto normalised = OnePass(rest).Run()) return *std::move(normalised);
  }
  return NormaliseStepByStep(std::move(document));
}
