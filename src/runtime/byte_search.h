// Looks for rare bytes, and moves short runs of them, many at a time where the processor can.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>

// One bit for each of the 16 bytes from here on that is one of those looked for.
template <typename... Char>
inline std::uint32_t HitsOf(const char* bytes, Char... wanted) {
  __m128i block;
  std::memcpy(&block, bytes, sizeof block);
  __m128i hits = _mm_setzero_si128();
  ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, _mm_set1_epi8(wanted)))), ...);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(hits));
}
#endif

// Where the first of the wanted bytes stands in text, at or behind from; the size of text if none does.
template <typename... Char>
inline std::size_t FindFirstOf(std::string_view text, std::size_t from, Char... wanted) {
  std::size_t at = from;
#ifdef __SSE2__
  constexpr std::size_t kBlock = 16;
  for (; at + kBlock <= text.size(); at += kBlock) {
    const auto hits = HitsOf(text.data() + at, wanted...);
    if (hits) return at + static_cast<std::size_t>(std::countr_zero(hits));
  }
  // The last block overlaps what was looked at, where nothing is.
  if (from + kBlock <= text.size()) {
    const std::size_t last = text.size() - kBlock;
    const auto hits = HitsOf(text.data() + last, wanted...);
    return hits ? last + static_cast<std::size_t>(std::countr_zero(hits)) : text.size();
  }
#endif
  while (at < text.size() && ((text[at] != wanted) && ...)) ++at;
  return at;
}

// One of two bytes, such as a letter in both cases.
struct EitherByte {
  char one, other;
  bool Is(char c) const { return c == one || c == other; }
};

// Where the first byte stands that is followed by the second at this distance, which may be 0, at or
// behind from; the size of text if none does.
inline std::size_t FindPair(std::string_view text, std::size_t from, EitherByte first, std::size_t distance,
                            EitherByte second) {
  if (text.size() < from + distance) return text.size();
  const std::size_t size = text.size() - distance;
  std::size_t at = from;
#ifdef __SSE2__
  constexpr std::size_t kBlock = 16;
  const auto hitsAt = [&](const char* bytes) {
    return HitsOf(bytes, first.one, first.other) & HitsOf(bytes + distance, second.one, second.other);
  };
  const auto found = [](std::size_t start, std::uint32_t hits) {
    return start + static_cast<std::size_t>(std::countr_zero(hits));
  };
  for (; at + kBlock <= size; at += kBlock) {
    if (const auto hits = hitsAt(text.data() + at)) return found(at, hits);
  }
  if (from + kBlock <= size) {
    const auto hits = hitsAt(text.data() + size - kBlock);
    return hits ? found(size - kBlock, hits) : text.size();
  }
#endif
  while (at < size && !(first.Is(text[at]) && second.Is(text[at + distance]))) ++at;
  return at < size ? at : text.size();
}

// Copies a short run to a place in front of it. Whole blocks are copied, so up to kOvershoot bytes more
// than length are read and written: they must be there, and nobody may need those at to.
inline constexpr std::size_t kOvershoot = 15;
inline void CopyForward(char* to, const char* from, std::size_t length) {
  for (std::size_t at = 0; at < length; at += kOvershoot + 1) {
    char block[kOvershoot + 1];
    std::memcpy(block, from + at, sizeof block);
    std::memcpy(to + at, block, sizeof block);
  }
}
