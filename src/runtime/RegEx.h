// Regular expressions. A pattern is what the user typed; a target is any run of bytes, read as UTF-8. Bytes
// that are not valid UTF-8 never match and never make a search fail.
//
//   pattern:  Perl-compatible; "." is one character; at most about 64,000 bytes
//   limits:   a search that takes too long is given up: all slow searches of one RegEx together may take
//             half a second, plus 50 nanoseconds for each byte that they search
#pragma once

#include <memory>
#include <string>
#include <string_view>

// The program itself leaves all of them at their defaults.
struct RegExOptions {
  bool DotMatchAll = true;             // "." also matches a line end
  bool CaseSensitive = false;          // otherwise case is folded by Unicode's rules
  bool ReplaceAllMatches = false;      // no effect: there is no replacing
  bool StringBeginIsLineBegin = true;  // "^" matches at the start of the target
  bool StringEndIsLineEnd = true;      // "$" matches at the end of the target
  bool MatchEmpty = true;              // an empty match counts
  bool TreatTargetAsOneLine = true;    // "^" and "$" do not match at line ends inside the target
  bool Greedy = true;                  // quantifiers take as much as they can
};

// The first match, in bytes from 0.
struct RegExMatch {
  std::size_t start = 0;
  std::size_t length = 0;
};

class RegEx {
 public:
  RegExOptions Options;  // Requires: set before the first Search
  std::string SearchPattern;

  // Raises RegExSearchPatternException for an invalid SearchPattern.
  void Compile();
  // The first match in target; nullptr if there is none. The RegEx owns the match, which is valid until the
  // next Search. Compiles a changed SearchPattern. Raises RegExMatchLimitException for a search given up.
  const RegExMatch* Search(std::string_view target);

 private:
  struct Compiled;
  int MatchSlowly(std::string_view target);
  struct Discard {
    void operator()(Compiled* compiled) const;
  };
  std::unique_ptr<Compiled, Discard> compiled_;
};
