// Looks for rare bytes, many at a time where the processor can.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// Where the first of three bytes stands in text, at or behind from; the size of text if none does.
inline std::size_t FindFirstOfThree(std::string_view text, std::size_t from, char a, char b, char c) {
  std::size_t at = from;
#ifdef __SSE2__
  const __m128i as = _mm_set1_epi8(a), bs = _mm_set1_epi8(b), cs = _mm_set1_epi8(c);
  for (; at + 16 <= text.size(); at += 16) {
    __m128i bytes;
    __builtin_memcpy(&bytes, text.data() + at, sizeof bytes);
    const __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, as), _mm_cmpeq_epi8(bytes, bs)),
                                      _mm_cmpeq_epi8(bytes, cs));
    const auto mask = static_cast<std::uint32_t>(_mm_movemask_epi8(hits));
    if (mask != 0) return at + static_cast<std::size_t>(std::countr_zero(mask));
  }
#endif
  while (at < text.size() && text[at] != a && text[at] != b && text[at] != c) ++at;
  return at;
}
