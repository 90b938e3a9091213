// Lines of actions: each gets exactly one "done" or "error", every printed line is an object, and files are
// created only where a line requests them.

#include <nlohmann/json.hpp>
#include <sstream>

#include "Session.h"
#include "runtime/Text.h"
#include "support/Harness.h"

namespace {

constexpr char kTracks[] =
    "<list id=\"1\"><track id=\"0\" name=\"\" lang_code=\"en\" lang_translated=\"English\"/>"
    "<track id=\"1\" name=\"\" lang_code=\"de\" lang_translated=\"German\"/></list>";
constexpr char kCaptions[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript><text start=\"1.5\" dur=\"2\">one</text>"
    "<text start=\"62.5\" dur=\"2\">two &amp;quot;three</text></transcript>";

wire::Reply Answer(const std::string& request) {
  const bool isList = request.starts_with("GET /timedtext");
  return {wire::Page(isList ? kTracks : kCaptions)};
}

// Save paths of the input become names in a single folder.
std::string Confined(const std::string& line, const std::string& folder) {
  constexpr std::string_view kSave = "save ";
  if (!line.starts_with(kSave)) return line;
  std::string name = line.substr(kSave.size());
  for (char& c : name) {
    if (c == '/') c = '_';
  }
  return std::string(kSave) + folder + "/" + name;
}

struct Count {
  std::size_t ends = 0;
  std::size_t errors = 0;
};

Count CountEnds(const std::string& output) {
  Count count;
  for (const std::string& line : fuzz::Lines(output)) {
    const auto object = nlohmann::json::parse(line, nullptr, false);
    HOLDS(object.is_object() && object.contains("event"));
    const std::string event = object["event"];
    HOLDS(event != "message" || std::string(object["text"]).find("Exception: ") == std::string::npos);
    count.ends += event == "done" || event == "error";
    count.errors += event == "error";
  }
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const TemporaryFolder saved;
  const TemporaryFolder prefs;
  std::string script;
  std::size_t actions = 0;
  for (std::string line : fuzz::Lines(std::string_view(reinterpret_cast<const char*>(data), size))) {
    line = Confined(line, saved.Path());
    script += line + "\n";
    if (line.ends_with('\r')) line.pop_back();
    actions += !Trim(line).empty() && !line.starts_with('#');
  }
  wire::Reset(Answer);
  std::istringstream in(script);
  std::ostringstream out;
  {
    Session session(Endpoints{}, prefs.Path(), out);
    session.Run(in);
    const Count count = CountEnds(out.str());
    HOLDS(count.ends == actions);
    HOLDS(session.HadErrors() == (count.errors > 0));
  }
  HOLDS(prefs.Count() <= 1);
  for (const auto& entry : std::filesystem::directory_iterator(saved.Path())) {
    HOLDS(script.find("save " + entry.path().string()) != std::string::npos);
  }
  return 0;
}
