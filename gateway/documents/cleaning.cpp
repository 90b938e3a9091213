#include "gateway/documents/cleaning.h"

#include <algorithm>
#include <array>

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"
#include "gateway/documents/byte_set.h"

namespace gateway {
namespace {

constexpr std::int64_t kLastLength = 3000;

constexpr std::string_view kZeroWidth = "\xE2\x80\x8B";      // U+200B
constexpr std::string_view kByteOrder = "\xEF\xBB\xBF";      // U+FEFF
constexpr std::string_view kNoBreak = "\xC2\xA0";            // U+00A0
constexpr std::string_view kNarrowNoBreak = "\xE2\x80\xAF";  // U+202F

// Blanks, control characters, and the first byte of each of the four characters above.
constexpr ByteSet kSpecialBytes("\x7F\xC2\xE2\xEF", 0x20);

bool WritesNoBlanks(std::string_view language) {
  constexpr std::array<std::string_view, 4> kLanguages = {"km", "lo", "my", "th"};
  const std::string base = Lowercase(language.substr(0, language.find_first_of("-_")));
  return std::find(kLanguages.begin(), kLanguages.end(), base) != kLanguages.end();
}

// Rewrites the words of one cue in place: they never get longer.
class WordsTidier {
 public:
  WordsTidier(char* to, bool keepsZeroWidth) : begin_(to), to_(to), keepsZeroWidth_(keepsZeroWidth) {}

  std::uint32_t Tidy(std::string_view words) {
    while (!words.empty()) words.remove_prefix(TakeOne(words));
    if (lineEnd_) {
      to_ = lineEnd_;
    } else if (to_ > begin_) {
      --to_;  // the trailing line feed
    }
    return static_cast<std::uint32_t>(to_ - begin_);
  }

 private:
  std::size_t TakeOne(std::string_view words) {
    const auto byte = static_cast<unsigned char>(words.front());
    if (byte == '\n' || byte == '\r') return EndLine(), 1;
    if (byte <= 0x20 || byte == 0x7F) return PutBlank(), 1;
    if (words.starts_with(kNoBreak)) return PutBlank(), kNoBreak.size();
    if (words.starts_with(kNarrowNoBreak)) return PutBlank(), kNarrowNoBreak.size();
    if (words.starts_with(kByteOrder)) return kByteOrder.size();
    if (words.starts_with(kZeroWidth)) return PutZeroWidth(), kZeroWidth.size();
    return PutPlain(words.substr(0, kSpecialBytes.FindIn(words, 1)));
  }
  std::size_t PutPlain(std::string_view plain) {
    lineEnd_ = to_ = std::copy(plain.begin(), plain.end(), to_);
    return plain.size();
  }
  void PutBlank() {
    if (lineEnd_ && to_[-1] != ' ') *to_++ = ' ';
  }
  void PutZeroWidth() {
    if (keepsZeroWidth_ && lineEnd_) to_ = std::copy(kZeroWidth.begin(), kZeroWidth.end(), to_);
  }
  // Discards trailing blanks.
  void EndLine() {
    if (!lineEnd_) return;
    to_ = lineEnd_;
    *to_++ = '\n';
    lineEnd_ = nullptr;
  }

  char* begin_;
  char* to_;
  char* lineEnd_ = nullptr;  // after the line's last word so far; null before the first
  bool keepsZeroWidth_;
};

}  // namespace

void SortByStart(Cues& cues) {
  const auto isEarlier = [](const Cue& a, const Cue& b) { return a.start < b.start; };
  if (!std::is_sorted(cues.list.begin(), cues.list.end(), isEarlier))
    std::stable_sort(cues.list.begin(), cues.list.end(), isEarlier);
}

void CloseOpenEnds(Cues& cues) {
  std::int64_t later = kUntilNext;  // the next start after this one
  for (std::size_t i = cues.list.size(); i-- > 0;) {
    Cue& cue = cues.list[i];
    if (i + 1 < cues.list.size() && cues.list[i + 1].start > cue.start) later = cues.list[i + 1].start;
    if (cue.end == kUntilNext) cue.end = later == kUntilNext ? cue.start + kLastLength : later;
  }
}

void TidyWords(Cues& cues, std::string_view language) {
  const bool keepsZeroWidth = WritesNoBlanks(language);
  for (Cue& cue : cues.list)
    cue.length = WordsTidier(cues.words.data() + cue.at, keepsZeroWidth).Tidy(cues.WordsOf(cue));
  std::erase_if(cues.list, [](const Cue& cue) { return cue.length == 0; });
}

void DropRepeats(Cues& cues) {
  const auto repeats = [&](const Cue& one, const Cue& next) {
    return one.start == next.start && cues.WordsOf(one) == cues.WordsOf(next);
  };
  cues.list.erase(std::unique(cues.list.begin(), cues.list.end(), repeats), cues.list.end());
}

void CutOverlaps(Cues& cues) {
  std::int64_t later = kLatestTime;
  for (std::size_t i = cues.list.size(); i-- > 0;) {
    Cue& cue = cues.list[i];
    if (i + 1 < cues.list.size() && cues.list[i + 1].start > cue.start) later = cues.list[i + 1].start;
    cue.end = std::min(cue.end, later);
  }
}

void Clean(Cues& cues, std::string_view language, bool automatic) {
  SortByStart(cues);
  CloseOpenEnds(cues);
  TidyWords(cues, language);
  DropRepeats(cues);
  const bool rolled = Unroll(cues);
  if (rolled) DropRepeats(cues);  // cues that differed only in the lines removed are now the same
  if (automatic || rolled) CutOverlaps(cues);
}

}  // namespace gateway
