// Decides who may ask. Any web page can make its user's browser send a request to a port of this machine, and
// a host name that resolves to 127.0.0.1 makes the gateway look like the page's own site. Such requests are
// recognised by the headers that a browser adds and no page can remove.
#pragma once

#include "gateway/server/request_line.h"

namespace gateway {

// Whether the head comes from a program of this machine, as far as its lines show:
//
//   Host             127.0.0.1, localhost or [::1], with or without a port; at most one; may be missing
//   Origin, Referer  must be missing
//   Sec-Fetch-Site   only "none": the user typed the address
//
// Names and values are compared without regard to case. If in doubt, the answer is no: for a line that is not
// a header, a folded line, a CR within a line, another spelling of the address, an empty Host.
bool MayAsk(const RequestHead& head);

}  // namespace gateway
