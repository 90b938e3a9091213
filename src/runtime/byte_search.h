// Looks for rare bytes, many at a time where the processor can.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>

// One bit for each of the 16 bytes from here on that is one of the three.
inline std::uint32_t HitsOfThree(const char* bytes, char a, char b, char c) {
  __m128i block;
  __builtin_memcpy(&block, bytes, sizeof block);
  const __m128i hits = _mm_or_si128(
      _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(a)), _mm_cmpeq_epi8(block, _mm_set1_epi8(b))),
      _mm_cmpeq_epi8(block, _mm_set1_epi8(c)));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(hits));
}
#endif

// Where the first of three bytes stands in text, at or behind from; the size of text if none does.
inline std::size_t FindFirstOfThree(std::string_view text, std::size_t from, char a, char b, char c) {
  std::size_t at = from;
#ifdef __SSE2__
  constexpr std::size_t kBlock = 16;
  const auto found = [&](std::size_t start, std::uint32_t hits) {
    return start + static_cast<std::size_t>(std::countr_zero(hits));
  };
  for (; at + kBlock <= text.size(); at += kBlock) {
    if (const auto hits = HitsOfThree(text.data() + at, a, b, c)) return found(at, hits);
  }
  // The last block overlaps what was looked at, where nothing is.
  if (from + kBlock <= text.size()) {
    const std::size_t last = text.size() - kBlock;
    const auto hits = HitsOfThree(text.data() + last, a, b, c);
    return hits ? found(last, hits) : text.size();
  }
#endif
  while (at < text.size() && text[at] != a && text[at] != b && text[at] != c) ++at;
  return at;
}
