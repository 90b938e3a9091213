#include "timedtext/TimedText.h"

#include "runtime/Numbers.h"
#include "runtime/byte_search.h"

namespace {

std::size_t FindToReplace(std::string_view text, std::size_t from) {
  return FindFirstOf(text, from, '\r', '\n', '\xFD');
}

}  // namespace

TimedText TimedText::From(std::string document) {
  TimedTextFields fields = NormaliseTimedText(std::move(document));
  return {std::make_shared<std::string>(std::move(fields.document)), std::move(fields.ends)};
}

char* Put(char* to, CueText text) {
  const std::string_view raw = text.raw;
  for (std::size_t from = 0;;) {
    const std::size_t end = FindToReplace(raw, from);
    to = Put(to, raw.substr(from, end - from));
    if (end == raw.size()) return to;
    const std::string_view pair = raw.substr(end, 2);
    const bool isPair = pair == "\r\n" || pair == "\xFD\xFF";
    *to++ = raw[end] == '\xFD' && !isPair ? '\xFD' : ' ';
    from = end + (isPair ? 2 : 1);
  }
}

std::string_view CueText::In(std::string& buffer) const {
  if (FindToReplace(raw, 0) == raw.size()) return raw;
  return buffer = TextOf(*this);
}

std::string CleanCueText(std::string_view text) { return TextOf(CueText{text}); }

double CueEndSeconds(const TimedTextCue& cue) { return Val(Str(Val(cue.start) + Val(cue.dur))); }
