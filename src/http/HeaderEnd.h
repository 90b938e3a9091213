// Finds the blank line after headers that arrive in pieces. Reads each byte a bounded number of times,
// however small the pieces are.
#pragma once

#include <string>
#include <string_view>

class HeaderEnd {
 public:
  void Reset() { *this = HeaderEnd(); }
  // text is everything so far. True once it contains two line ends in a row, tried in this order: CR LF, LF,
  // CR.
  bool FindIn(std::string_view text);
  // Offset of the first of the two line ends, and which line end it is.
  std::size_t Position() const { return position_; }
  const std::string& Eol() const { return eol_; }

 private:
  std::size_t seen_ = 0;
  std::size_t position_ = 0;
  std::string eol_;
};
