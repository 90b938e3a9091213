#include "gateway/server/request_line.h"

#include <algorithm>
#include <array>

namespace gateway {
namespace {

constexpr std::array<std::string_view, 9> kMethods = {"GET",     "HEAD",    "POST",  "PUT",  "DELETE",
                                                      "CONNECT", "OPTIONS", "TRACE", "PATCH"};

std::string TakeLine(std::string_view& rest) {
  std::string_view line = rest.substr(0, rest.find('\n'));
  rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return std::string(line);
}

}  // namespace

RequestHead SplitHead(std::string_view head) {
  RequestHead lines{TakeLine(head), {}};
  while (!head.empty()) lines.headers.push_back(TakeLine(head));
  return lines;
}

std::optional<RequestLine> ReadRequestLine(std::string_view line) {
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string_view::npos || last < first + 2) return std::nullopt;
  const std::string_view method = line.substr(0, first);
  const std::string_view version = line.substr(last + 1);
  const bool known = std::find(kMethods.begin(), kMethods.end(), method) != kMethods.end();
  if (!known || (version != "HTTP/1.0" && version != "HTTP/1.1")) return std::nullopt;
  return RequestLine{method, line.substr(first + 1, last - first - 1)};
}

}  // namespace gateway
