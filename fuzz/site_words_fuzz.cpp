// A version of yt-dlp and its messages, of any bytes: a cause is one sentence that fits into a header, and an
// error takes precedence over a warning.

#include "gateway/sources/causes.h"
#include "gateway/sources/version.h"
#include "support/Harness.h"

namespace {

using gateway::Cause;
using gateway::Effect;

void CheckSentence(const std::string& sentence) {
  HOLDS(sentence.size() <= 200);
  HOLDS(sentence.empty() || (sentence.back() == '.' && sentence.find_first_of("\r\n") == std::string::npos));
  for (const char c : sentence) HOLDS(c >= ' ' && c <= '~');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string version = input.Line();
  const std::string messages = input.Rest();
  const std::chrono::sys_days today = std::chrono::year{2026} / 11 / 23;
  gateway::ChildEnd end;
  end.how = gateway::ChildEnd::How::Exited;
  for (const Cause& cause : {gateway::CauseIn(messages), gateway::GapIn(messages), gateway::CauseOf(end)}) {
    CheckSentence(cause.sentence);
    const Cause inLight = gateway::WithDoubtAbout(version, today, cause);
    CheckSentence(inLight.sentence);
    HOLDS(inLight.sentence.empty() == cause.sentence.empty());
    HOLDS(inLight.effect == cause.effect || inLight.effect == Effect::Outdated);
  }
  HOLDS(gateway::IsVersion(version) || gateway::DoubtAbout(version, today).empty());
  HOLDS(gateway::CauseIn("ERROR: HTTP Error 429\n" + messages).effect == Effect::Pause);
  HOLDS(gateway::LinesToLog(messages).size() <= 3 * messages.size() + 3);
  return 0;
}
