// Finds a term of plain ASCII, ignoring case, with the result that a regular expression gives, only sooner.
// Most search terms are of this kind.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/byte_search.h"

class PlainWord {
 public:
  // nullopt for a pattern that is empty, consists of "k" and "s" alone, or has a character other than ASCII
  // letters, digits, blanks and a few punctuation marks.
  static std::optional<PlainWord> From(std::string_view pattern);

  static constexpr std::size_t kNotThere = std::string_view::npos;
  // Byte offset of the first match in target, or kNotThere. nullopt if Unicode's rules must decide: case
  // folding also maps U+017F (long s) to "s" and U+212A (Kelvin sign) to "k".
  std::optional<std::size_t> FindIn(std::string_view target) const;
  std::size_t Size() const { return folded_.size(); }

 private:
  enum class Match { No, Yes, Unknown };

  PlainWord() = default;
  // Takes the rarest pair of neighbours, or for distance 0 the rarest character; false if there is none.
  bool ChooseAnchor(std::size_t distance);
  // Whether target contains the word with its anchor at this offset.
  Match MatchAround(std::string_view target, std::size_t at) const;

  std::string folded_;  // in lower case
  // What is searched for: one character or two neighbours, never "k" or "s", so ASCII in every match.
  std::size_t anchor_ = 0;  // index of the first
  std::size_t distance_ = 0;
  EitherByte first_{}, second_{};
};
