// A caption file of any bytes, in one of the seven formats: the low bits of the first byte choose the format,
// the two high bits an automatic track and Thai. The result is a document in which the program reads all cues
// in order, or a fault.

#include "gateway/documents/Cues.h"
#include "gateway/documents/cleaning.h"
#include "gateway/documents/convert.h"
#include "gateway/documents/encoding.h"
#include "runtime/Text.h"
#include "support/Harness.h"
#include "timedtext/TimedText.h"

namespace {

// The words of a cue as the program can read them in a document.
std::string Carried(std::string words) {
  words = ReplaceAll(std::move(words), "</text>", "< /text>");
  words = ReplaceAll(std::move(words), "&amp;#39;", "&#39;");
  words = ReplaceAll(std::move(words), "&amp;quot;", "&quot;");
  return ReplaceAll(std::move(words), "\n", " ");
}

std::string InSeconds(std::int64_t milliseconds) {
  std::string decimals = std::to_string(milliseconds % 1000);
  return std::to_string(milliseconds / 1000) + "." + std::string(3 - decimals.size(), '0') + decimals;
}

bool IsTidy(std::string_view words) {
  for (const char c : words) {
    if ((c >= 0 && c < ' ' && c != '\n') || c == 0x7F) return false;
  }
  for (const char* odd : {"  ", " \n", "\n ", "\n\n", "\xC2\xA0", "\xEF\xBB\xBF"}) {
    if (words.find(odd) != std::string_view::npos) return false;
  }
  return !words.empty() && words.front() != ' ' && words.back() != ' ' && words.back() != '\n';
}

void CheckCues(const gateway::Cues& cues, bool automatic) {
  for (std::size_t i = 0; i < cues.list.size(); ++i) {
    const gateway::Cue& cue = cues.list[i];
    HOLDS(cue.start >= 0 && cue.start <= cue.end && cue.end <= gateway::kLatestTime + 3000);
    HOLDS(IsTidy(cues.WordsOf(cue)));
    HOLDS(fuzz::IsValidUTF8(cues.WordsOf(cue)));
    if (i == 0) continue;
    const gateway::Cue& before = cues.list[i - 1];
    HOLDS(before.start <= cue.start);
    HOLDS(!automatic || before.end <= cue.start || before.start == cue.start);
    HOLDS(before.start != cue.start || cues.WordsOf(before) != cues.WordsOf(cue));
  }
}

void CheckDocument(const std::string& document, const gateway::Cues& cues) {
  HOLDS(NormaliseTimedText(document).document == NormaliseStepByStep(document));
  const TimedText track = TimedText::From(document);
  HOLDS(track.Starts() == cues.list.size() && track.Cues() == cues.list.size());
  for (std::size_t i = 0; i < cues.list.size(); ++i) {
    const gateway::Cue& cue = cues.list[i];
    HOLDS(track.Times(i).start == InSeconds(cue.start));
    HOLDS(track.Times(i).dur == InSeconds(cue.end - cue.start));
    HOLDS(TextOf(track.Text(i)) == Carried(std::string(cues.WordsOf(cue))));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::string bytes = input.Rest();
  const auto formats = gateway::CaptionFormats();
  const gateway::CaptionFormat& format = formats[choice % 8 % formats.size()];
  const bool automatic = (choice & 0x80) != 0;
  const std::string_view language = (choice & 0x40) != 0 ? "th" : "en";

  const gateway::Conversion conversion = gateway::ToDocument(bytes, format, {language, automatic});
  HOLDS(conversion.document.empty() != conversion.fault.empty());
  HOLDS(conversion.fault.empty() || conversion.fault.starts_with("this file "));
  if (conversion.document.empty()) return 0;

  std::string text = *gateway::ToUtf8(bytes, format.isXml);
  HOLDS(fuzz::IsValidUTF8(text) && text.find('\0') == std::string::npos);
  gateway::Cues cues(text.size());
  HOLDS(format.read(std::move(text), cues).empty());
  gateway::Clean(cues, language, automatic);
  CheckCues(cues, automatic);
  CheckDocument(conversion.document, cues);
  return 0;
}
