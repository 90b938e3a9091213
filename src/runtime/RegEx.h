// Regular expressions. A pattern is what the person typed; a target is any run of bytes, read as
// UTF-8 where it is UTF-8. Bytes that are no UTF-8 never match and never make a search fail.
//
//   pattern:  Perl-compatible; "." is one character; a pattern is at most some 64,000 bytes long
//   limits:   a target on which matching runs away is given up. All the slow searches of one RegEx
//             together take half a second at most, and 50 nanoseconds a byte that is searched.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct RegExOptions {
  bool DotMatchAll = true;             // "." matches a line end too
  bool CaseSensitive = false;          // case is told apart; else it folds by Unicode's rules
  bool ReplaceAllMatches = false;      // for replacing, which nothing here does
  bool StringBeginIsLineBegin = true;  // "^" matches at the start of the target
  bool StringEndIsLineEnd = true;      // "$" matches at the end of the target
  bool MatchEmpty = true;              // an empty match counts
  bool TreatTargetAsOneLine = true;    // "^" and "$" do not match at line ends inside the target
  bool Greedy = true;                  // quantifiers take as much as they can
};

// Where the first match lies, in bytes from 0.
struct RegExMatch {
  std::size_t start = 0;
  std::size_t length = 0;
};

class RegEx {
 public:
  RegEx();
  ~RegEx();
  RegEx(RegEx&&) noexcept;
  RegEx& operator=(RegEx&&) noexcept;

  RegExOptions Options;  // to be set before the first Search
  std::string SearchPattern;

  // Raises RegExSearchPatternException for a SearchPattern that is not valid.
  void Compile();
  // The first match from the beginning of target; nullptr if there is none. The match belongs
  // to the RegEx and holds until the next Search. Compiles SearchPattern when it has changed, and
  // raises RegExMatchLimitException for a target that was given up.
  const RegExMatch* Search(std::string_view target);

 private:
  struct Compiled;
  int MatchSlowly(std::string_view target);
  std::unique_ptr<Compiled> compiled_;
};
