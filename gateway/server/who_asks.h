// Who may ask. Any web page can have its user's browser send a request to a port of this machine, and a name
// that its owner points to 127.0.0.1 makes it look like the page's own site. What gives a page away are the
// headers that a browser adds and no page can take out.
#pragma once

#include "gateway/server/request_line.h"

namespace gateway {

// Whether the head comes from a program of this machine, so far as its lines show:
//
//   Host             127.0.0.1, localhost or [::1], each with or without a port; at most one; may be missing
//   Origin, Referer  never
//   Sec-Fetch-Site   only "none", what a user typed into the address bar
//
// Names are compared whatever their case. In doubt the answer is no: with a line that is no header, a folded
// one, a CR within a line, another spelling of the address, an empty Host.
bool MayAsk(const RequestHead& head);

}  // namespace gateway
