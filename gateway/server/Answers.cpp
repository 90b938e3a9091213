#include "gateway/server/Answers.h"

#include <httplib.h>

#include <algorithm>
#include <array>

#include "gateway/server/Connection.h"
#include "gateway/server/request_target.h"
#include "gateway/server/track_list.h"
#include "gateway/sources/CaptionLibrary.h"

namespace gateway {
namespace {

constexpr const char* kXml = "text/xml; charset=utf-8";

/// Shows a request line, with no headers behind it, as the incoming side of a connection.
class RequestStream final : public httplib::Stream {
 public:
  RequestStream(const std::string& requestLine, Connection& connection)
      : incoming_(requestLine + "\r\n\r\n"), connection_(connection) {}

  bool is_readable() const override { return at_ < incoming_.size(); }
  bool is_writable() const override { return !connection_.Broken(); }

  ssize_t read(char* buffer, size_t capacity) override {
    const size_t count = incoming_.copy(buffer, capacity, at_);
    at_ += count;
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* bytes, size_t count) override {
    return connection_.Send({bytes, count}) ? static_cast<ssize_t>(count) : -1;
  }

  void get_remote_ip_and_port(std::string&, int&) const override {}
  void get_local_ip_and_port(std::string&, int&) const override {}
  socket_t socket() const override { return INVALID_SOCKET; }

 private:
  std::string incoming_;
  size_t at_ = 0;
  Connection& connection_;
};

bool SendPiece(const CaptionFile& file, size_t offset, size_t length, httplib::DataSink& sink) {
  std::array<char, 32768> bytes;
  const ssize_t count = file.ReadAt(offset, bytes.data(), std::min(bytes.size(), length));
  return count > 0 && sink.write(bytes.data(), static_cast<size_t>(count));
}

void AnswerWithFile(CaptionFile found, httplib::Response& response) {
  response.status = 200;
  response.set_header("Accept-Ranges", "none");
  // A provider of no bytes would be sent without a length.
  if (found.Size() == 0) return response.set_content("", kXml);
  const auto file = std::make_shared<CaptionFile>(std::move(found));
  response.set_content_provider(file->Size(), kXml,
                                [file](size_t offset, size_t length, httplib::DataSink& sink) {
                                  return SendPiece(*file, offset, length, sink);
                                });
}

void Answer(const CaptionLibrary& library, const httplib::Request& request, httplib::Response& response) {
  if (request.method != "GET" && request.method != "HEAD") {
    response.status = 405;
    return response.set_header("Allow", "GET, HEAD");
  }
  const CaptionRequest wanted = ReadTarget(request.target);
  response.status = 404;
  if (wanted.kind == CaptionRequest::Kind::TrackList) {
    response.status = 200;
    response.set_header("Accept-Ranges", "none");
    response.set_content(TrackListDocument(wanted.code, library.Languages(wanted.code)), kXml);
  } else if (wanted.kind == CaptionRequest::Kind::TimedText) {
    if (auto file = library.Open(wanted.code, wanted.language)) AnswerWithFile(*std::move(file), response);
  }
}

/// The library refuses a target with a second "?" or a blank and cuts it at "#", behind all of which a
/// language may still follow. So it is shown a plain one. A line that is no request line stays as it is, to
/// be refused.
std::string WithPlainTarget(const std::string& requestLine) {
  if (TargetOf(requestLine).empty()) return requestLine;
  return requestLine.substr(0, requestLine.find(' ')) + " /" + requestLine.substr(requestLine.rfind(' '));
}

void Refuse(Connection& connection, const char* status) {
  connection.Send(std::string("HTTP/1.1 ") + status + "\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
}

}  // namespace

/// The library's own accept loop waits for slow clients without a bound and closes a listening socket that
/// others share, so only its reading of a request and writing of an answer are used.
class Answers::Http final : public httplib::Server {
 public:
  explicit Http(const CaptionLibrary& library) {
    // Without a listening socket of its own the library takes itself to be stopping and sends no file.
    svr_sock_ = 0;
    set_pre_routing_handler([&library](const httplib::Request& request, httplib::Response& response) {
      Answer(library, request, response);
      return HandlerResponse::Handled;
    });
  }

  void Process(const std::string& requestLine, Connection& connection) {
    RequestStream stream(WithPlainTarget(requestLine), connection);
    bool closed = false;
    process_request(stream, true, closed,
                    [&](httplib::Request& request) { request.target = TargetOf(requestLine); });
  }
};

Answers::Answers(const CaptionLibrary& library) : http_(std::make_unique<Http>(library)) {}
Answers::~Answers() = default;

void Answers::Serve(Connection& connection) const {
  std::string requestLine;
  const Connection::Head head = connection.ReadHead(requestLine);
  switch (head) {
    case Connection::Head::Complete:
      http_->Process(requestLine, connection);
      break;
    case Connection::Head::TooLarge:
      Refuse(connection, "431 Request Header Fields Too Large");
      break;
    case Connection::Head::Malformed:
      Refuse(connection, "400 Bad Request");
      break;
    case Connection::Head::Gone:
      return;
  }
  const bool withoutBody = requestLine.starts_with("GET ") || requestLine.starts_with("HEAD ");
  connection.Finish(!withoutBody);
}

}  // namespace gateway
