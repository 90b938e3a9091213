// The lines of a request's head, and the parts of the first.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

struct RequestHead {
  std::string line;                  // the request line, without its line end
  std::vector<std::string> headers;  // the following lines in order, without their line ends
};

// Splits a head, without its blank line, at CR LF and LF. A CR elsewhere stays.
RequestHead SplitHead(std::string_view head);

// request line = METHOD " " TARGET " " VERSION
//
// METHOD is one that HTTP defines, VERSION HTTP/1.0 or HTTP/1.1. TARGET is not empty and may contain blanks,
// which a pasted code may bring.
struct RequestLine {
  std::string_view method;  // both point into the line that was read
  std::string_view target;
};

// nullopt if the line has another form.
std::optional<RequestLine> ReadRequestLine(std::string_view line);

}  // namespace gateway
