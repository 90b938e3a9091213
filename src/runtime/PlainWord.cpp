#include "runtime/PlainWord.h"

#include <algorithm>

#include "runtime/Text.h"

namespace {

// From the most frequent to the rarest in running text; what isn't listed is rarer still.
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

// The long s and the Kelvin sign are an "s" and a "k" to who ignores case.
bool HasRelative(char c) { return c == 's' || c == 'k'; }

bool HoldsRelative(std::string_view text) {
  const auto next = [&](std::size_t from) {
    return FindPair(text, from, {'\xC5', '\xE2'}, 1, {'\xBF', '\x84'});
  };
  std::size_t at = next(0);
  while (at < text.size() && text.substr(at, 2) != "\xC5\xBF" && text.substr(at, 3) != "\xE2\x84\xAA") {
    at = next(at + 1);
  }
  return at < text.size();
}

EitherByte BothCases(char lower) { return {lower, Uppercase({&lower, 1}).front()}; }

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::optional<PlainWord> PlainWord::From(std::string_view pattern) {
  if (pattern.empty()) return std::nullopt;
  PlainWord word;
  for (const char c : pattern) {
    if (!IsPlain(c)) return std::nullopt;
    word.folded_ += Folded(c);
  }
  word.hasRelatives_ = std::any_of(word.folded_.begin(), word.folded_.end(), HasRelative);
  if (!word.ChooseMark(1) && !word.ChooseMark(0)) return std::nullopt;
  return word;
}

bool PlainWord::ChooseMark(std::size_t distance) {
  std::size_t best = 0;
  for (std::size_t i = 0; i + distance < folded_.size(); ++i) {
    const char one = folded_[i], other = folded_[i + distance];
    const std::size_t rarity = Rarity(one) + Rarity(other);
    if (HasRelative(one) || HasRelative(other) || rarity <= best) continue;
    best = rarity;
    mark_ = i;
    first_ = BothCases(one);
    second_ = BothCases(other);
  }
  distance_ = distance;
  return best > 0;
}

std::optional<std::size_t> PlainWord::FindIn(std::string_view target) const {
  const auto next = [&](std::size_t from) { return FindPair(target, from, first_, distance_, second_); };
  std::size_t at = next(0);
  if (at == target.size()) return kNotThere;
  if (hasRelatives_ && HoldsRelative(target)) return std::nullopt;
  while (at < target.size() && !StandsAt(target, at)) at = next(at + 1);
  return at < target.size() ? at - mark_ : kNotThere;
}

bool PlainWord::StandsAt(std::string_view target, std::size_t mark) const {
  if (mark < mark_ || target.size() - (mark - mark_) < folded_.size()) return false;
  const std::size_t at = mark - mark_;
  for (std::size_t i = 0; i < folded_.size(); ++i) {
    if (Folded(target[at + i]) != folded_[i]) return false;
  }
  return true;
}
