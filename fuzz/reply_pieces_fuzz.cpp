// A reply of any bytes, in any pieces and with any end, to every kind of request.
//
//   input = kind of end, number of pieces, their sizes, the reply

#include "http/HTTPSocket.h"
#include "http/HeaderEnd.h"
#include "support/Harness.h"

namespace {

struct Result {
  std::string body;
  int error = 0;
  int lastError = 0;
  int status = 0;
  std::string headers;
  bool operator==(const Result&) const = default;
};

Result ResultOf(const HTTPSocket& socket, std::string body) {
  const auto headers = socket.PageHeaders();
  return {std::move(body), socket.ErrorCode(), socket.LastErrorCode(), socket.HTTPStatusCode(),
          headers ? headers->Source() : ""};
}

Result Blocking(const wire::Reply& reply) {
  wire::Reset([&](const std::string&) { return reply; });
  HTTPSocket socket;
  std::string body = socket.Get("http://host/p", 30);
  HOLDS(wire::Connections().size() == 1);
  HOLDS(!socket.IsConnected());
  return ResultOf(socket, std::move(body));
}

Result IntoFile(const wire::Reply& reply) {
  wire::Reset([&](const std::string&) { return reply; });
  const std::string path = fuzz::Folder() / "page";
  HTTPSocket socket;
  const bool good = socket.Get("http://host/p", std::make_shared<FolderItem>(path), 30);
  HOLDS(good == (socket.ErrorCode() == 0));
  return ResultOf(socket, ReadFile(path));
}

// The events agree with the result; polls after the reply change nothing.
void CheckEvents(const wire::Reply& reply, const Result& blocking) {
  wire::Reset([&](const std::string&) { return reply; });
  HTTPSocket socket;
  std::string progress, page;
  int pages = 0, headers = 0, errors = 0;
  socket.HeadersReceived = [&](const InternetHeaders&, int) { ++headers; };
  socket.ReceiveProgress = [&](std::int64_t soFar, std::int64_t, const std::string& piece) {
    progress += piece;
    HOLDS(soFar == static_cast<std::int64_t>(progress.size()));
  };
  socket.PageReceived = [&](const std::string&, int status, HTTPSocket::HeadersPtr,
                            const std::string& content) {
    ++pages;
    page = content;
    HOLDS(status == socket.HTTPStatusCode());
  };
  socket.Error = [&](int) { ++errors; };
  socket.Get("http://host/p");
  for (std::size_t i = 0; i < reply.bytes.size() + reply.pieces.size() + 8; ++i) socket.Poll();
  HOLDS(pages <= 1 && headers <= 1 && errors <= 1);
  if (pages == 1) {
    HOLDS(page == blocking.body);
    HOLDS(page == progress);
  }
}

// Pieces may matter for replies with an empty line of one kind of line end followed by one of a preferred
// kind, such as headers that end with two line feeds and CR LF CR LF in the body: the search prefers the
// latter if it has arrived.
bool HeadEndsAtItsFirstEmptyLine(const std::string& reply) {
  HeaderEnd end;
  if (!end.FindIn(reply)) return true;
  const std::size_t found = end.Position() + 2 * end.Eol().size();
  for (const std::string_view emptyLine : {"\r\n\r\n", "\n\n", "\r\r"}) {
    if (const std::size_t at = reply.find(emptyLine); at < reply.size() && at + emptyLine.size() < found)
      return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  wire::Reply reply;
  const std::uint8_t kind = input.Byte();
  reply.end = static_cast<wire::End>(kind % 3);
  reply.endsAtOnce = kind & 4;
  for (std::uint8_t pieces = input.Byte(); pieces > 0 && !input.IsOver(); --pieces) {
    reply.pieces.push_back(input.Byte());
  }
  reply.bytes = input.Rest();

  FakePlatform host;
  host.ticksEachYield = 6;  // all pieces of an input take less than the time-out
  const Application application(host);
  const Result cut = Blocking(reply);
  HOLDS(cut.error == 0 || cut.error == kErrorTimeOut);
  HOLDS(reply.bytes.find(cut.body) != std::string::npos);
  if (reply.end != wire::End::Silence) CheckEvents(reply, cut);
  const Result file = IntoFile(reply);
  HOLDS(file.error != 0 || (file.body == cut.body && file.status == cut.status));
  HOLDS(cut.body.starts_with(file.body));
  if (!HeadEndsAtItsFirstEmptyLine(reply.bytes)) return 0;
  wire::Reply whole = reply;
  whole.pieces.clear();
  HOLDS(Blocking(whole) == cut);
  return 0;
}
