// Links, language codes and addresses: whatever a user pastes or a server sends, the program sends one
// request with three plain headers, or none.
//
//   input = language code LF address LF link        the link is the rest

#include <algorithm>

#include "http/HTTPSocket.h"
#include "support/Harness.h"

namespace {

bool BreaksLines(const std::string& text) {
  return text.find_first_of(std::string("\r\n\0", 3)) != std::string::npos;
}

std::string Request(const std::string& path, const std::string& server) {
  return "GET " + path + " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " + server + "\r\n\r\n";
}

wire::Reply OneTrack(const std::string&) {
  return {
      wire::Page("<list id=\"1\"><track id=\"0\" name=\"\" lang_code=\"en\" "
                 "lang_translated=\"English\"/></list>")};
}

// The code is the text after the mark, up to the next one; without a mark it is "" and no request is sent.
void CheckLink(fuzz::Program& program, const std::string& pasted) {
  wire::Reset(OneTrack);
  program.form.TextField1.UserTypes(pasted);
  const std::string& link = program.form.TextField1.Text();
  HOLDS(program.form.PushButton2.UserClicks());
  const auto& sent = wire::Connections();
  HOLDS(sent.size() <= 1);
  const auto messages = program.TakeMessages();
  if (sent.empty()) {
    HOLDS(messages.size() == 1 && program.form.Listbox1.ListCount() == 0);
    return;
  }
  HOLDS(messages.empty());
  const std::string& code = program.app.vidCode;
  HOLDS(link.find("v=" + code) != std::string::npos || link.find(".be/" + code) != std::string::npos);
  HOLDS(!BreaksLines(code));
  HOLDS(sent.front().request ==
        Request("/timedtext?type=list&v=" + code, program.app.endpoints.TrackListEndpoint));
}

void CheckLanguage(fuzz::Program& program, const std::string& language) {
  wire::Reset([](const std::string&) { return wire::Reply{wire::Page("x")}; });
  program.form.Listbox1.RemoveRowsFrom(0);
  program.GiveTrack("English", language);
  program.form.TextField1.UserTypes("x");
  program.form.SRTBox.SetValue(true);
  program.host.saves = {std::nullopt};
  HOLDS(program.form.PushButton1.UserClicks());
  std::string path = "/api/timedtext?&v=" + program.app.vidCode + "&lang=" + language;
  std::erase(path, ' ');
  const auto messages = program.TakeMessages();
  if (BreaksLines(path)) {
    HOLDS(wire::Connections().empty());
    HOLDS(messages.size() == 1 && messages.front().starts_with("Error code: 10004 - "));
    return;
  }
  HOLDS(wire::Connections().size() == 1 && messages.empty());
  HOLDS(wire::Connections().front().request == Request(path, program.app.endpoints.TimedTextEndpoint));
}

void CheckAddress(const std::string& address) {
  wire::Reset([](const std::string&) { return wire::Reply{wire::Page("x")}; });
  HTTPSocket socket;
  const std::string page = socket.Get(address, 30);
  if (BreaksLines(address)) {
    HOLDS(wire::Connections().empty() && socket.ErrorCode() == kErrorBadURL && page.empty());
    return;
  }
  const std::size_t scheme = address.find("://");
  const std::string rest = scheme == std::string::npos ? address : address.substr(scheme + 3);
  const std::string server = rest.substr(0, rest.find('/'));
  const std::string path = rest.size() == server.size() ? "/" : rest.substr(server.size());
  HOLDS(wire::Connections().size() == 1);
  const wire::Connection& sent = wire::Connections().front();
  HOLDS(sent.address == server.substr(0, server.find(':')));
  HOLDS(sent.request.empty() ? socket.ErrorCode() == kErrorBadAddress
                             : sent.request == Request(path, server));
  HOLDS(sent.request.empty() || (sent.port >= 1 && sent.port <= 65535 && page == "x"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string language = input.Line();
  const std::string address = input.Line();
  const std::string link = input.Rest();
  fuzz::Program program;
  CheckLink(program, link);
  CheckLanguage(program, language);
  CheckAddress(address);
  return 0;
}
