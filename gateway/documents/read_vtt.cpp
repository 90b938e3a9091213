// WebVTT:
//
//   file    = "WEBVTT" [blank ...] line-end *(line | cue)
//   cue     = time-line *payload (empty line | end)
//   payload = a line that is not empty; one of blanks alone is not
//
// Only what follows a time line counts: the head's lines, names of cues, NOTE, STYLE and REGION fall away.
// Tags are dropped before references are resolved.

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"
#include "gateway/documents/lines.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"

namespace gateway {
namespace {

// Any name is a tag's, as in a browser; a "<" before a blank, a sign or a number is a sign itself.
Markup::Tag TagOf(std::string_view inside) {
  const std::string_view name = inside.substr(inside.starts_with('/') ? 1 : 0);
  if (name.empty() || IsLetter(name.front()) || name.front() == '.') return Markup::Tag::Mark;
  std::string_view time = inside;
  return TakeClock(time) && time.empty() ? Markup::Tag::Time : Markup::Tag::None;
}

const Markup kMarkup = {TagOf, false, WebCharacters()};

bool IsHead(std::string_view line) {
  constexpr std::string_view kName = "WEBVTT";
  if (!line.starts_with(kName)) return false;
  line.remove_prefix(kName.size());
  return line.empty() || line.front() == ' ' || line.front() == '\t';
}

// The payload at the front of text, and what ends it stays there.
std::string_view TakePayload(std::string_view& text) {
  const std::string_view whole = text;
  while (!text.empty()) {
    std::string_view after = text;
    const std::string_view line = TakeLine(after);
    if (line.empty() || ReadTimeLine(line)) break;
    text = after;
  }
  return whole.substr(0, whole.size() - text.size());
}

}  // namespace

std::string ReadVtt(std::string text, Cues& cues) {
  UnifyLineEnds(text);
  std::string_view left = text;
  if (!IsHead(TakeLine(left))) return "this file is not in the vtt format";
  while (!left.empty()) {
    const auto times = ReadTimeLine(TakeLine(left));
    if (!times) continue;
    const bool timesWords = AppendMarkedUp(cues.words, TakePayload(left), kMarkup);
    cues.Close(times->start, times->end, timesWords);
  }
  return "";
}

}  // namespace gateway
