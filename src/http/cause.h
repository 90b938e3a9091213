// The cause of a failed request for captions, for the line below a message.
#pragma once

#include <string>

class HTTPSocket;

// The cause that the gateway reports (the first 200 bytes of the header Ravelyn-Cause, printable ASCII only),
// otherwise what the client knows: no server is listening, the server is not the gateway, or the reply broke
// off or stalled before the first byte of its body. "" if none is known. Requires: the request of socket has
// ended with this body.
std::string CauseOf(const HTTPSocket& socket, const std::string& body);
