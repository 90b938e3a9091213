// Challenges of a server that requests a name and a password: the answer is one header on one line, and the
// client stops once there are no credentials.
//
//   input = flags, name LF password LF challenge

#include <optional>

#include "http/HTTPSocket.h"
#include "support/Harness.h"

namespace {

constexpr int kMostAttempts = 3;

std::string FromBase64(const std::string& text) {
  static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : text) {
    if (c == '=') break;
    const std::size_t digit = kDigits.find(c);
    HOLDS(digit != std::string::npos);
    bits = (bits << 6 | static_cast<unsigned>(digit)) & 0xFFFF;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  return bytes;
}

// The value of the header in this request; nullopt if it is absent. Also checks that the request has no
// other lines than the client's.
std::optional<std::string> Answer(const std::string& request, const std::string& header) {
  HOLDS(request.ends_with("\r\n\r\n"));
  const auto lines = fuzz::Lines(request.substr(0, request.size() - 2));
  std::optional<std::string> value;
  HOLDS(lines.size() == 4 || lines.size() == 5);
  for (const std::string& line : lines) {
    HOLDS(line.ends_with('\r') && line.find('\r') == line.size() - 1);
    if (line.starts_with(header + ": "))
      value = line.substr(header.size() + 2, line.size() - header.size() - 3);
  }
  HOLDS(value.has_value() == (lines.size() == 5));
  return value;
}

void CheckParams(const std::string& challenge) {
  const Dictionary params = HTTPSocket()._ParseAuthenticationParams(challenge);
  for (std::int64_t i = 0; i < params.Count(); ++i) {
    HOLDS(ToString(params.Key(i)).find('=') == std::string::npos);
    HOLDS(ToString(params.Value(params.Key(i))).size() <= challenge.size());
  }
}

void CheckAnswer(const std::string& value, const std::string& name, const std::string& password) {
  if (value.starts_with("Basic ")) {
    HOLDS(FromBase64(value.substr(6)) == name + ":" + password);
    return;
  }
  HOLDS(value.starts_with("Digest username=\""));
  const std::size_t response = value.rfind(", response=\"");
  HOLDS(response != std::string::npos);
  HOLDS(value.find_first_not_of("0123456789abcdef", response + 12) == response + 12 + 32 ||
        value.find("opaque=") != std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t flags = input.Byte();
  const std::string name = input.Line();
  const std::string password = input.Line();
  const std::string challenge = input.Rest();
  const bool isProxy = flags & 1;

  FakePlatform host;
  host.ticksEachYield = 1;
  const Application application(host);
  wire::Reset([&](const std::string&) {
    return wire::Reply{std::string("HTTP/1.0 ") + (isProxy ? "407" : "401") + " No\r\n" +
                       (isProxy ? "Proxy" : "WWW") + "-Authenticate: " + challenge + "\r\n\r\nno"};
  });
  HTTPSocket socket;
  int asked = 0;
  const auto ask = [&](const std::string&, const InternetHeaders&, std::string& user, std::string& secret) {
    user = name;
    secret = password;
    return ++asked <= kMostAttempts;
  };
  (isProxy ? socket.ProxyAuthenticationRequired : socket.AuthenticationRequired) = ask;
  socket.Get("http://host/p", 30);

  const auto& sent = wire::Connections();
  HOLDS(!sent.empty() && sent.size() <= kMostAttempts + 1U);
  HOLDS(asked <= kMostAttempts + 1);
  const std::string header = isProxy ? "Proxy-Authorization" : "Authorization";
  HOLDS(!Answer(sent.front().request, header));
  for (std::size_t i = 1; i < sent.size(); ++i) {
    const auto value = Answer(sent[i].request, header);
    HOLDS(value.has_value());
    CheckAnswer(*value, name, password);
  }
  CheckParams(challenge);
  return 0;
}
