// Searches for rare bytes, sixteen at a time with SSE2, else byte by byte; both ways give the same results.
// Also copies short runs of bytes. RAVELYN_PORTABLE_BYTE_SEARCH turns SSE2 off, for a test of the other way.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) && !defined(RAVELYN_PORTABLE_BYTE_SEARCH)
#define RAVELYN_SSE2
#include <emmintrin.h>

inline constexpr std::size_t kBlock = 16;

// A bit for each of the 16 bytes at this address, set if the byte is wanted.
template <typename... Char>
inline std::uint32_t HitsOf(const char* bytes, Char... wanted) {
  __m128i block;
  std::memcpy(&block, bytes, sizeof block);
  __m128i hits = _mm_setzero_si128();
  ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, _mm_set1_epi8(wanted)))), ...);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(hits));
}

// Offset of the first hit in a text of this size, at or after from; size if there is none. hitsAt gives the
// hits of the block at an offset. Requires: from + kBlock <= size.
template <typename HitsAt>
inline std::size_t FindHit(std::size_t from, std::size_t size, const HitsAt& hitsAt) {
  for (std::size_t at = from; at + kBlock <= size; at += kBlock) {
    if (const auto hits = hitsAt(at)) return at + static_cast<std::size_t>(std::countr_zero(hits));
  }
  // The last block overlaps the one before, which has no hit.
  const auto hits = hitsAt(size - kBlock);
  return hits ? size - kBlock + static_cast<std::size_t>(std::countr_zero(hits)) : size;
}
#endif

// Offset of the first of the wanted bytes in text, at or after from; the size of text if there is none.
template <typename... Char>
inline std::size_t FindFirstOf(std::string_view text, std::size_t from, Char... wanted) {
#ifdef RAVELYN_SSE2
  if (from + kBlock <= text.size())
    return FindHit(from, text.size(), [&](std::size_t at) { return HitsOf(text.data() + at, wanted...); });
#endif
  std::size_t at = from;
  while (at < text.size() && ((text[at] != wanted) && ...)) ++at;
  return at;
}

// One of two bytes, such as a letter in both cases.
struct EitherByte {
  char one, other;
  bool Is(char c) const { return c == one || c == other; }
};

// Offset of the first `first` with `second` at this distance after it, at or after from; the size of text if
// there is none. distance may be 0.
inline std::size_t FindPair(std::string_view text, std::size_t from, EitherByte first, std::size_t distance,
                            EitherByte second) {
  if (text.size() < from + distance) return text.size();
  const std::size_t size = text.size() - distance;
  std::size_t at = from;
#ifdef RAVELYN_SSE2
  if (from + kBlock <= size) {
    at = FindHit(from, size, [&](std::size_t place) {
      const char* bytes = text.data() + place;
      return HitsOf(bytes, first.one, first.other) & HitsOf(bytes + distance, second.one, second.other);
    });
  }
#endif
  while (at < size && !(first.Is(text[at]) && second.Is(text[at + distance]))) ++at;
  return at < size ? at : text.size();
}

// Offset of wanted in text, at or after from; npos if there is none. Quicker than find() if the first byte of
// wanted is common. Requires: wanted is not empty.
inline std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from = 0) {
  const char first = wanted.front(), last = wanted.back();
  for (std::size_t at = from;; ++at) {
    at = FindPair(text, at, {first, first}, wanted.size() - 1, {last, last});
    if (at == text.size()) return std::string_view::npos;
    if (text.compare(at, wanted.size(), wanted) == 0) return at;
  }
}

// Copies a short run to an earlier place, in whole blocks.
// Requires: kOvershoot bytes exist after both runs; those after the copy may be overwritten.
inline constexpr std::size_t kOvershoot = 15;
inline void CopyForward(char* to, const char* from, std::size_t length) {
  for (std::size_t at = 0; at < length; at += kOvershoot + 1) {
    char block[kOvershoot + 1];
    std::memcpy(block, from + at, sizeof block);
    std::memcpy(to + at, block, sizeof block);
  }
}
