#pragma once
// What the gateway says to a request. Everything about HTTP beyond bytes on a connection is decided here.

#include <memory>

namespace gateway {

class CaptionLibrary;
class Connection;

/// The answer goes by the request line alone; headers and body of a request change nothing. Every answer is
/// the last on its connection and tells its length, so HTTP/1.0 clients are at home.
///
///   track list                200, text/xml, also for a code that is unknown
///   timed text                200, text/xml, the file's bytes; 404 with an empty body if there is none
///   any other path            404, empty
///   other than GET and HEAD   405, empty
///   no HTTP                   400, empty; 431 for a head that is too large
///
/// A file that shrinks while it is sent ends the connection short of the length told.
class Answers {
 public:
  /// `library` must outlive this.
  explicit Answers(const CaptionLibrary& library);
  ~Answers();

  /// Reads one request and answers it. Any number of threads may call it, each with a connection of its own.
  void Serve(Connection& connection) const;

 private:
  class Http;
  std::unique_ptr<Http> http_;
};

}  // namespace gateway
