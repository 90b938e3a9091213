#include "gateway/server/Answers.h"

#include <algorithm>
#include <array>

#include "gateway/server/Connection.h"
#include "gateway/server/request_line.h"
#include "gateway/server/request_target.h"
#include "gateway/server/track_list.h"
#include "gateway/server/who_asks.h"

namespace gateway {
namespace {

constexpr std::size_t kLongestCause = 200;

struct Status {
  const char* line;
  const char* cause;  // of an empty body, if the source gives none
};

constexpr Status kFound{"200 OK", "no captions"};
constexpr Status kBadRequest{"400 Bad Request", "The gateway can't read this request."};
constexpr Status kForbidden{
    "403 Forbidden", "The gateway answers only programs of this machine, at 127.0.0.1, localhost or [::1]."};
constexpr Status kUnknownPath{"404 Not Found", "The gateway serves nothing at this address."};
constexpr Status kNoText{"404 Not Found", "no captions"};
constexpr Status kNotAllowed{"405 Method Not Allowed", "The gateway answers only GET and HEAD."};
constexpr Status kTooLarge{"431 Request Header Fields Too Large", "The request's head is too large."};

struct Answer {
  Status status;
  Document body = {};
  std::string cause = {};  // "": that of the status
  bool hasCause = true;
  std::shared_ptr<void> place = nullptr;  // see CaptionText
};

std::size_t SizeOf(const Document& body) {
  if (const auto* text = std::get_if<std::string>(&body)) return text->size();
  return std::get<CaptionFile>(body).Size();
}

// The cause as one line of printable ASCII.
std::string HeaderValue(std::string_view cause) {
  std::string value(cause.substr(0, kLongestCause));
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return value;
}

std::string HeadOf(const Answer& answer) {
  std::string head = std::string("HTTP/1.1 ") + answer.status.line + "\r\nConnection: close\r\n";
  if (answer.status.line == kFound.line) head += "Content-Type: text/xml; charset=utf-8\r\n";
  if (answer.status.line == kNotAllowed.line) head += "Allow: GET, HEAD\r\n";
  if (answer.hasCause)
    head +=
        "Ravelyn-Cause: " + HeaderValue(answer.cause.empty() ? answer.status.cause : answer.cause) + "\r\n";
  return head + "Content-Length: " + std::to_string(SizeOf(answer.body)) + "\r\n\r\n";
}

void SendFile(Connection& connection, const CaptionFile& file) {
  std::array<char, 32768> bytes;
  for (std::uint64_t at = 0; at < file.Size();) {
    const std::size_t wanted = std::min<std::uint64_t>(bytes.size(), file.Size() - at);
    const ssize_t count = file.ReadAt(at, bytes.data(), wanted);
    if (count <= 0 || !connection.Send({bytes.data(), static_cast<std::size_t>(count)})) return;
    at += static_cast<std::size_t>(count);
  }
}

void Send(Connection& connection, const Answer& answer, bool withBody) {
  if (!connection.Send(HeadOf(answer)) || !withBody) return;
  if (const auto* text = std::get_if<std::string>(&answer.body)) {
    connection.Send(*text);
  } else {
    SendFile(connection, std::get<CaptionFile>(answer.body));
  }
}

Answer ListOf(CaptionSource& source, std::string_view code, const Requester& requester) {
  TrackList list = source.Tracks(code, requester);
  const bool isEmpty = list.tracks.empty();
  return {kFound, TrackListDocument(code, std::move(list.tracks)), std::move(list.cause), isEmpty};
}

Answer TextOf(CaptionSource& source, const CaptionRequest& wanted, const Requester& requester) {
  CaptionText text = source.Text(wanted.code, wanted.language, requester);
  if (!text.document) return {kNoText, {}, std::move(text.cause)};
  return {kFound, *std::move(text.document), {}, false, std::move(text.place)};
}

Answer AnswerTo(CaptionSource& source, const RequestHead& head, int connection) {
  if (!MayAsk(head)) return {kForbidden};
  const auto line = ReadRequestLine(head.line);
  if (!line) return {kBadRequest};
  if (line->method != "GET" && line->method != "HEAD") return {kNotAllowed};
  const CaptionRequest wanted = ReadTarget(line->target);
  const Requester requester{std::chrono::steady_clock::now(), connection};
  if (wanted.kind == CaptionRequest::Kind::TrackList) return ListOf(source, wanted.code, requester);
  if (wanted.kind == CaptionRequest::Kind::TimedText) return TextOf(source, wanted, requester);
  return {kUnknownPath};
}

}  // namespace

void Answers::Serve(Connection& connection) const {
  RequestHead head;
  switch (connection.ReadHead(head)) {
    case Connection::Head::Complete:
      Send(connection, AnswerTo(source_, head, connection.Socket()), !head.line.starts_with("HEAD "));
      break;
    case Connection::Head::TooLarge:
      Send(connection, {kTooLarge}, true);
      break;
    case Connection::Head::Malformed:
      Send(connection, {kBadRequest}, true);
      break;
    case Connection::Head::Gone:
      return;
  }
  const bool withoutBody = head.line.starts_with("GET ") || head.line.starts_with("HEAD ");
  connection.Finish(!withoutBody);
}

}  // namespace gateway
