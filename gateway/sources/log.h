// The gateway's log, on standard error.
#pragma once

#include <string_view>

namespace gateway {

// Writes "ravelyn-gateway: " and the text as one line. Control characters and bytes that are not UTF-8 become
// "?", and a text is cut after 1,000 bytes. Any number of threads may call it.
void Log(std::string_view text);

}  // namespace gateway
