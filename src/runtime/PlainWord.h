// Finds a term that is nothing but plain ASCII, ignoring case, where a regular expression would give the
// very same answer only later. Most terms that people type are such words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "runtime/byte_search.h"

class PlainWord {
 public:
  // nullopt for a pattern with characters that mean something else, or beyond ASCII, or with nothing but
  // "k" and "s", or "".
  static std::optional<PlainWord> From(std::string_view pattern);

  static constexpr std::size_t kNotThere = std::string_view::npos;
  // Where the word stands first in target, in bytes from 0, or kNotThere. nullopt where only Unicode's
  // rules can tell: "k" and "s" have relatives beyond ASCII, the Kelvin sign and the long s.
  std::optional<std::size_t> FindIn(std::string_view target) const;
  std::size_t Size() const { return folded_.size(); }

 private:
  PlainWord() = default;
  // The mark of distance 0 or 1; false if no character serves.
  bool ChooseMark(std::size_t distance);
  bool StandsAt(std::string_view target, std::size_t mark) const;

  std::string folded_;  // in lower case
  // What every match holds as it is: one character, or two neighbours, without relatives. Of those, the
  // ones that texts hold least often.
  std::size_t mark_ = 0;  // index of the first
  std::size_t distance_ = 0;
  EitherByte first_{}, second_{};
  bool hasRelatives_ = false;
};
