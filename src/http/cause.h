// Why a request for captions brought nothing, for the line below a message.
#pragma once

#include <string>

class HTTPSocket;

// The cause that the gateway names in its reply (header Ravelyn-Cause, its first 200 bytes, printable
// ASCII alone), else what the client knows: nothing listens there, what answers there is no gateway, or the
// reply broke off or stalled before a byte of its body. "" where there is none. The request of socket has
// ended and gave body.
std::string CauseOf(const HTTPSocket& socket, const std::string& body);
