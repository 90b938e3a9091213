// Answers requests. All of HTTP beyond the bytes on a connection is decided here.
#pragma once

#include "gateway/sources/CaptionSource.h"

namespace gateway {

class Connection;

// Each connection carries one answer, which gives its length, so HTTP/1.0 clients can read it.
//
//   client not allowed        403, empty; see who_asks.h
//   track list                200, text/xml, for an unknown code too
//   timed text                200, text/xml, the document; 404 with an empty body if there is none
//   any other path            404, empty
//   not GET or HEAD           405, empty
//   not HTTP                  400, empty; 431 for a head that is too large
//
// A list without tracks and every empty body come with the header Ravelyn-Cause, which says why in one
// English sentence (ASCII, at most 200 bytes). If a file shrinks while it is sent, the connection ends before
// the announced length.
class Answers {
 public:
  // `source` must outlive this.
  explicit Answers(CaptionSource& source) : source_(source) {}

  // Reads one request and answers it. Any number of threads may call it, each with a connection of its own.
  void Serve(Connection& connection) const;

 private:
  CaptionSource& source_;
};

}  // namespace gateway
