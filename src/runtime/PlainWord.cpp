#include "runtime/PlainWord.h"

#include "runtime/Text.h"
#include "runtime/byte_search.h"

namespace {

// From the most frequent to the rarest in running text; what isn't listed is rarer still.
constexpr std::string_view kByFrequency = " etaoinshrldcumwfgypbvkjxqz";
constexpr std::string_view kPunctuation = " ,'!-_/:;\"";

std::size_t Rarity(char c) {
  const std::size_t rank = kByFrequency.find(c);
  return rank == std::string_view::npos ? kByFrequency.size() : rank;
}

bool IsPlain(char c) {
  const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return letter || (c >= '0' && c <= '9') || kPunctuation.find(c) != std::string_view::npos;
}

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::optional<PlainWord> PlainWord::From(std::string_view pattern) {
  if (pattern.empty()) return std::nullopt;
  PlainWord word;
  for (const char c : pattern) {
    if (!IsPlain(c)) return std::nullopt;
    word.folded_ += Folded(c);
  }
  for (std::size_t i = 1; i < word.folded_.size(); ++i) {
    if (Rarity(word.folded_[i]) > Rarity(word.folded_[word.rarest_])) word.rarest_ = i;
  }
  word.lower_ = word.folded_[word.rarest_];
  word.upper_ = Uppercase({&word.lower_, 1}).front();
  word.hasRelatives_ = word.folded_.find_first_of("ks") != std::string::npos;
  return word;
}

std::optional<std::size_t> PlainWord::FindIn(std::string_view target) const {
  // The first bytes of the long s and of the Kelvin sign in UTF-8.
  const auto mayHoldRelative = [&] {
    return FindFirstOfThree(target, 0, '\xC5', '\xE2', '\xE2') < target.size();
  };
  if (hasRelatives_ && mayHoldRelative()) return std::nullopt;
  std::size_t at = FindFirstOfThree(target, rarest_, lower_, upper_, upper_);
  while (at < target.size() && !StandsAt(target, at - rarest_)) {
    at = FindFirstOfThree(target, at + 1, lower_, upper_, upper_);
  }
  return at < target.size() ? at - rarest_ : kNotThere;
}

bool PlainWord::StandsAt(std::string_view target, std::size_t at) const {
  if (target.size() - at < folded_.size()) return false;
  for (std::size_t i = 0; i < folded_.size(); ++i) {
    if (Folded(target[at + i]) != folded_[i]) return false;
  }
  return true;
}
