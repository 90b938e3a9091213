// Finds the blank line behind a block of headers that arrives in pieces, looking at every byte a
// bounded number of times however small the pieces are.
#pragma once

#include <string>
#include <string_view>

class HeaderEnd {
 public:
  void Reset() { *this = HeaderEnd(); }
  // text is all that has come so far. True once a doubled line end stands in it: first that of the
  // line end that text has (CR LF before LF before CR), then of LF, of CR LF, of CR.
  bool FindIn(std::string_view text);
  // Where the first of the two line ends starts, from 0, and which line end it is.
  std::size_t Position() const { return position_; }
  const std::string& Eol() const { return eol_; }

 private:
  std::size_t seen_ = 0;
  bool hasCRLF_ = false;
  bool hasLF_ = false;
  std::size_t position_ = 0;
  std::string eol_;
};
