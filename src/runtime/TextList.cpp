#include "runtime/TextList.h"

#include <limits>
#include <stdexcept>

#include "runtime/exceptions.h"

void TextList::Append(std::string_view text) {
  bytes_.append(text);
  if (bytes_.size() > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("The list is full.");
  ends_.push_back(static_cast<std::uint32_t>(bytes_.size()));
}

std::string_view TextList::At(std::size_t index) const {
  if (index >= ends_.size()) throw OutOfBoundsException("The list has no text at that index.");
  const std::size_t from = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(bytes_).substr(from, ends_[index] - from);
}
