// Finds a term that is nothing but plain ASCII, ignoring case, where a regular expression would give the
// very same answer only later. Most terms that people type are such words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class PlainWord {
 public:
  // nullopt for a pattern with characters that mean something else, or beyond ASCII, or "".
  static std::optional<PlainWord> From(std::string_view pattern);

  static constexpr std::size_t kNotThere = std::string_view::npos;
  // Where the word stands first in target, in bytes from 0, or kNotThere. nullopt where only Unicode's
  // rules can tell: "k" and "s" have relatives beyond ASCII, the Kelvin sign and the long s.
  std::optional<std::size_t> FindIn(std::string_view target) const;
  std::size_t Size() const { return folded_.size(); }

 private:
  PlainWord() = default;
  bool StandsAt(std::string_view target, std::size_t at) const;

  std::string folded_;      // in lower case
  std::size_t rarest_ = 0;  // index of the character that texts hold least often
  char lower_ = 0;          // that character, in both cases
  char upper_ = 0;
  bool hasRelatives_ = false;
};
