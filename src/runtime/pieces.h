// What a text can be put together of, without a string for each piece. A type of pieces has two functions:
// MostBytes tells how much room it may take, and Put writes it there and gives the place behind it.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

inline std::size_t MostBytes(std::string_view text) { return text.size(); }
inline char* Put(char* to, std::string_view text) { return to + text.copy(to, text.size()); }

inline std::size_t MostBytes(std::int64_t) { return 20; }
inline char* Put(char* to, std::int64_t number) { return std::to_chars(to, to + 20, number).ptr; }

template <typename... Piece>
void AppendPieces(std::string& text, const Piece&... pieces) {
  const std::size_t length = text.size();
  text.resize(length + (std::size_t{0} + ... + MostBytes(pieces)));
  char* end = text.data() + length;
  ((end = Put(end, pieces)), ...);
  text.resize(static_cast<std::size_t>(end - text.data()));
}

// Pieces as a text.
template <typename... Piece>
std::string TextOf(const Piece&... pieces) {
  std::string text;
  AppendPieces(text, pieces...);
  return text;
}
