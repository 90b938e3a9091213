// The first line of a request, and the lines of its head as they came.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

struct RequestHead {
  std::string line;                  // the request line, without its end
  std::vector<std::string> headers;  // the lines after it, each without its end, in their order
};

// Cuts a head, which ends before its blank line, at its line ends: CR LF or LF. A CR elsewhere stays.
RequestHead SplitHead(std::string_view head);

// request line = METHOD " " TARGET " " VERSION
//
// METHOD is one of HTTP's own, VERSION HTTP/1.0 or HTTP/1.1. TARGET is not empty and may hold blanks, as a
// code that was pasted does.
struct RequestLine {
  std::string_view method;  // all three point into the line that was read
  std::string_view target;
};

// nullopt if the line has another form.
std::optional<RequestLine> ReadRequestLine(std::string_view line);

}  // namespace gateway
