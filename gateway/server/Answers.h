// What the gateway answers to a request. Everything about HTTP beyond bytes on a connection is decided here.
#pragma once

#include "gateway/sources/CaptionSource.h"

namespace gateway {

class Connection;

// Every answer is the last on its connection and names its length, so HTTP/1.0 clients are at home.
//
//   not for this asker        403, empty; see who_asks.h
//   track list                200, text/xml, also for a code that is unknown
//   timed text                200, text/xml, the document; 404 with an empty body if there is none
//   any other path            404, empty
//   other than GET and HEAD   405, empty
//   no HTTP                   400, empty; 431 for a head that is too large
//
// A list without tracks and every empty body come with the header Ravelyn-Cause: why, in one English
// sentence, ASCII, at most 200 bytes. A file that shrinks while it is sent ends the connection short of its
// length.
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
