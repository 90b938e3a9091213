#include "runtime/PlainWord.h"

#include <algorithm>

#include "runtime/Text.h"

namespace {

// From the most frequent to the rarest in running text; any other character is rarer still.
constexpr std::string_view kByFrequency = " etaoinshrldcumwfgypbvkjxqz";
constexpr std::string_view kPunctuation = " ,'!-_/:;\"";

std::size_t Rarity(char c) {
  const std::size_t rank = kByFrequency.find(c);
  return 1 + (rank == std::string_view::npos ? kByFrequency.size() : rank);
}

bool IsPlain(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return letter || (c >= '0' && c <= '9') || kPunctuation.find(c) != std::string_view::npos;
}

// "s" and "k" have relatives beyond ASCII (see FindIn).
bool HasRelative(char c) { return c == 's' || c == 'k'; }

EitherByte BothCases(char lower) { return {lower, UpperByte(lower)}; }

}  // namespace

std::optional<PlainWord> PlainWord::From(std::string_view pattern) {
  if (!std::all_of(pattern.begin(), pattern.end(), IsPlain)) return std::nullopt;
  PlainWord word;
  word.folded_ = Lowercase(pattern);
  if (!word.ChooseAnchor(1) && !word.ChooseAnchor(0)) return std::nullopt;
  return word;
}

bool PlainWord::ChooseAnchor(std::size_t distance) {
  std::size_t best = 0;
  for (std::size_t i = 0; i + distance < folded_.size(); ++i) {
    const char one = folded_[i], other = folded_[i + distance];
    const std::size_t rarity = Rarity(one) + Rarity(other);
    if (HasRelative(one) || HasRelative(other) || rarity <= best) continue;
    best = rarity;
    anchor_ = i;
    first_ = BothCases(one);
    second_ = BothCases(other);
  }
  distance_ = distance;
  return best > 0;
}

std::optional<std::size_t> PlainWord::FindIn(std::string_view target) const {
  const auto next = [&](std::size_t from) { return FindPair(target, from, first_, distance_, second_); };
  for (std::size_t at = next(0); at < target.size(); at = next(at + 1)) {
    const Match match = MatchAround(target, at);
    if (match == Match::Yes) return at - anchor_;
    if (match == Match::Unknown) return std::nullopt;
  }
  return kNotThere;
}

PlainWord::Match PlainWord::MatchAround(std::string_view target, std::size_t at) const {
  const auto compare = [&](std::size_t i) {
    const std::size_t place = at + i - anchor_;  // wraps around before the start of the target
    if (place >= target.size()) return Match::No;
    if (LowerByte(target[place]) == folded_[i]) return Match::Yes;
    const bool isASCII = static_cast<unsigned char>(target[place]) < 0x80;
    return HasRelative(folded_[i]) && !isASCII ? Match::Unknown : Match::No;
  };
  // Outwards from the anchor: up to the first difference, each character is a single byte in the target too.
  Match match = Match::Yes;
  for (std::size_t i = anchor_; match == Match::Yes && i-- > 0;) match = compare(i);
  for (std::size_t i = anchor_ + 1; match == Match::Yes && i < folded_.size(); ++i) match = compare(i);
  return match;
}
