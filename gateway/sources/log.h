// The gateway's log: one line each on standard error.
#pragma once

#include <string_view>

namespace gateway {

// Writes "ravelyn-gateway: " and the text as one line. Control characters and bytes that are no UTF-8
// become "?", and a text of more than 1,000 bytes is cut. Any number of threads may call it.
void Log(std::string_view text);

}  // namespace gateway
