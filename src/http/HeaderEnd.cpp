#include "http/HeaderEnd.h"

#include <algorithm>

bool HeaderEnd::FindIn(std::string_view text) {
  // A sequence of up to four bytes may start in the bytes seen before.
  const std::size_t from = seen_ - std::min<std::size_t>(seen_, 3);
  const std::string_view fresh = text.substr(from);
  seen_ = text.size();
  for (const std::string_view eol :
       {std::string_view("\r\n"), std::string_view("\n"), std::string_view("\r")}) {
    const std::size_t at = fresh.find(std::string(eol) + std::string(eol));
    if (at == std::string_view::npos) continue;
    position_ = from + at;
    eol_ = eol;
    return true;
  }
  return false;
}
