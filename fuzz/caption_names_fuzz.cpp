// Names of files in the gateway's folders: the parsed parts make up the name again, and from the list of
// tracks the program reads the same language.

#include "gateway/server/request_target.h"
#include "gateway/server/track_list.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/track_name.h"
#include "support/Harness.h"

namespace {

bool IsOneOf(const std::string& text, std::string_view marks) {
  for (const char c : text) {
    const bool isAlnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!isAlnum && marks.find(c) == std::string_view::npos) return false;
  }
  return !text.empty();
}

void CheckList(const gateway::CaptionName& name) {
  const std::string language(name.language);
  const gateway::TrackName called = gateway::NameOfTrack(language);
  HOLDS(!called.english.empty() && !called.own.empty());
  const std::string document =
      gateway::TrackListDocument(name.code, {{language, called.english, called.own, called.automatic}});
  HOLDS(fuzz::IsValidUTF8(document));
  fuzz::Program program;
  wire::Reset([&](const std::string&) { return wire::Reply{wire::Page(document)}; });
  program.form.TextField1.UserTypes("https://host/watch?v=" + std::string(name.code));
  HOLDS(program.form.PushButton2.UserClicks());
  HOLDS(program.TakeMessages().empty());
  HOLDS(program.form.Listbox1.ListCount() == 1);
  HOLDS(program.form.Listbox1.Cell(0, 1) == language);
  HOLDS(!program.form.Listbox1.Cell(0, 0).empty());
}

void CheckTarget(const gateway::CaptionName& name) {
  const auto wanted = gateway::ReadTarget("/api/timedtext?&v=" + std::string(name.code) +
                                          "&lang=" + std::string(name.language));
  HOLDS(wanted.kind == gateway::CaptionRequest::Kind::TimedText);
  HOLDS(wanted.code == name.code && wanted.language == name.language);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string fileName(reinterpret_cast<const char*>(data), size);
  const auto name = gateway::ParseCaptionName(fileName);
  // Any bytes are also a request target.
  const auto wanted = gateway::ReadTarget(fileName);
  HOLDS(wanted.code.size() <= fileName.size() && wanted.language.size() <= fileName.size());
  HOLDS(wanted.code.find_first_of("&?# \t") == std::string::npos);
  if (!name) return 0;
  std::string again(name->title);
  if (!again.empty()) again += ' ';
  again.append("[").append(name->code).append("].").append(name->language).append(".");
  HOLDS(fileName.starts_with(again));
  HOLDS(gateway::FormatWithEnding(fileName.substr(again.size())) == name->format);
  HOLDS(IsOneOf(std::string(name->code), "-._~") && IsOneOf(std::string(name->language), "-_"));
  CheckTarget(*name);
  CheckList(*name);
  return 0;
}
