// Builds a text of pieces without a string for each of them. A type of pieces has two functions: MostBytes
// gives an upper bound of its size, and Put writes it and returns the end of what it wrote.
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

// The pieces as one text.
template <typename... Piece>
std::string TextOf(const Piece&... pieces) {
  std::string text;
  AppendPieces(text, pieces...);
  return text;
}
