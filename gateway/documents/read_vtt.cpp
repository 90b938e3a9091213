// WebVTT:
//
//   file    = "WEBVTT" [blank ...] line-end *(line | cue)
//   cue     = time-line *payload (empty line | end)
//   payload = a line that is not empty; a line of blanks is not empty
//
// Only payloads after a time line count: header lines, names of cues, NOTE, STYLE and REGION are skipped.
// Tags are removed before references are resolved.

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"
#include "gateway/documents/lines.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"

namespace gateway {
namespace {

// Any name makes a tag, as in a browser; a "<" before a blank, a sign or a digit is plain text.
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

// Takes the payload from the front of text, but not the line that ends it.
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
