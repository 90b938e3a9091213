// A list of texts in one run of bytes: four bytes of overhead each, and no allocation for each. For
// lists of many short texts that are filled once, read by index and dropped together.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class TextList {
 public:
  // Room for so many texts of so many bytes together, so that filling copies nothing twice.
  void Reserve(std::size_t texts, std::size_t bytes) {
    ends_.reserve(texts);
    bytes_.reserve(bytes);
  }
  // All texts together hold at most 4 GiB; std::length_error beyond.
  void Append(std::string_view text);
  std::size_t Count() const { return ends_.size(); }
  // OutOfBoundsException for an index that is not there. The view holds until the next Append.
  std::string_view At(std::size_t index) const;

 private:
  std::string bytes_;
  std::vector<std::uint32_t> ends_;
};
