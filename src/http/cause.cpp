#include "http/cause.h"

#include <algorithm>
#include <cerrno>

#include "http/HTTPSocket.h"
#include "runtime/Numbers.h"

namespace {

constexpr std::size_t kLongestCause = 200;  // bytes

std::string ReportedCause(const InternetHeaders& headers) {
  const std::string cause = headers.Value("Ravelyn-Cause").substr(0, kLongestCause);
  const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
  return std::all_of(cause.begin(), cause.end(), isPrintable) ? cause : "";
}

// A reply of length 0, or without a length, is complete however early it ends.
bool IsWhole(const HTTPSocket& socket) {
  const auto headers = socket.PageHeaders();
  return socket.HTTPStatusCode() != 0 && !(headers && Val(headers->Value("Content-length")) > 0);
}

std::string OwnCause(const HTTPSocket& socket) {
  const int code = socket.LastErrorCode();
  if (code == ECONNREFUSED) return "Nothing listens at " + socket.Address + ":" + Str(socket.Port) + ".";
  if (code == kErrorPeerClosed || code == ECONNRESET)
    return "The reply broke off before the first byte of its text.";
  return socket.ErrorCode() == kErrorTimeOut ? "No answer came in time." : "";
}

}  // namespace

std::string CauseOf(const HTTPSocket& socket, const std::string& body) {
  const auto headers = socket.PageHeaders();
  std::string reported = headers ? ReportedCause(*headers) : "";
  if (!reported.empty()) return reported;
  const bool isForeign = !headers || headers->Value("Ravelyn-Cause").empty();
  if (isForeign && socket.HTTPStatusCode() >= 400)
    return "What answers at " + socket.Address + ":" + Str(socket.Port) +
           " is not Ravelyn's gateway: status " + Str(socket.HTTPStatusCode()) + ".";
  if (!body.empty()) return "";
  return IsWhole(socket) ? "" : OwnCause(socket);
}
