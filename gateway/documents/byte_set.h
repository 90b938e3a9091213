// A set of bytes, and a fast search for the next of them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace gateway {

class ByteSet {
 public:
  constexpr explicit ByteSet(std::string_view bytes) {
    for (const char byte : bytes) has_[static_cast<unsigned char>(byte)] = true;
  }
  // Also contains all bytes up to most.
  constexpr ByteSet(std::string_view bytes, unsigned char most) : ByteSet(bytes) {
    for (std::size_t byte = 0; byte <= most; ++byte) has_[byte] = true;
  }

  // The position of the first byte of the set at or after from; the text's size if there is none.
  std::size_t FindIn(std::string_view text, std::size_t from = 0) const {
    while (from < text.size() && !has_[static_cast<unsigned char>(text[from])]) ++from;
    return from;
  }

 private:
  std::array<bool, 256> has_{};
};

}  // namespace gateway
