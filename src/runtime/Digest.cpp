#include "runtime/Digest.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>

namespace {

using Block = std::array<std::uint32_t, 16>;
using State = std::array<std::uint32_t, 4>;

// Floor of 2^32 times the absolute sine of 1 to 64, in radians.
std::array<std::uint32_t, 64> Sines() {
  std::array<std::uint32_t, 64> sines{};
  for (std::size_t i = 0; i < sines.size(); ++i) {
    sines[i] = static_cast<std::uint32_t>(
        std::floor(std::fabs(std::sin(static_cast<double>(i + 1))) * 4294967296.0));
  }
  return sines;
}
const auto kSines = Sines();

// Sixteen steps. Each takes one word of the block: factor times the step, plus offset.
struct Round {
  std::size_t factor, offset;
  int turns[4];
  std::uint32_t (*mix)(std::uint32_t b, std::uint32_t c, std::uint32_t d);
};

constexpr Round kRounds[] = {
    {1, 0, {7, 12, 17, 22}, [](auto b, auto c, auto d) { return (b & c) | (~b & d); }},
    {5, 1, {5, 9, 14, 20}, [](auto b, auto c, auto d) { return (d & b) | (~d & c); }},
    {3, 5, {4, 11, 16, 23}, [](auto b, auto c, auto d) { return b ^ c ^ d; }},
    {7, 0, {6, 10, 15, 21}, [](auto b, auto c, auto d) { return c ^ (b | ~d); }},
};

void Digest(State& state, const Block& block) {
  auto [a, b, c, d] = state;
  for (std::size_t step = 0; step < 64; ++step) {
    const Round& round = kRounds[step / 16];
    const std::uint32_t word = block[(round.factor * step + round.offset) % 16];
    const std::uint32_t sum = a + round.mix(b, c, d) + word + kSines[step];
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, round.turns[step % 4]);
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

Block WordsAt(std::string_view text, std::size_t at) {
  Block block{};
  for (std::size_t i = 0; i < 64; ++i) {
    block[i / 4] |= static_cast<std::uint32_t>(static_cast<unsigned char>(text[at + i])) << (i % 4 * 8);
  }
  return block;
}

std::string LittleEndian(std::uint64_t value, int bytes) {
  std::string out;
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
  return out;
}

}  // namespace

std::string MD5(std::string_view text) {
  State state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
  const std::size_t whole = text.size() / 64 * 64;
  for (std::size_t at = 0; at < whole; at += 64) Digest(state, WordsAt(text, at));
  std::string tail(text.substr(whole));
  tail += '\x80';
  tail.resize(tail.size() <= 56 ? 56 : 120, '\0');
  tail += LittleEndian(static_cast<std::uint64_t>(text.size()) * 8, 8);
  for (std::size_t at = 0; at < tail.size(); at += 64) Digest(state, WordsAt(tail, at));
  std::string digest;
  for (const std::uint32_t word : state) digest += LittleEndian(word, 4);
  return digest;
}

std::string EncodeBase64(std::string_view text, std::int64_t lineLength) {
  static constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  std::int64_t onLine = 0;
  const auto put = [&](char c) {
    if (lineLength > 0 && onLine == lineLength) out += "\r\n", onLine = 0;
    out += c;
    ++onLine;
  };
  for (std::size_t at = 0; at < text.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, text.size() - at);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < count ? static_cast<unsigned char>(text[at + i]) : 0u);
    }
    for (std::size_t i = 0; i < 4; ++i) put(i <= count ? kLetters[bits >> (18 - 6 * i) & 63] : '=');
  }
  return out;
}
