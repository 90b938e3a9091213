// The results of the fast implementations, and of the plain ones for the same input.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "runtime/Numbers.h"
#include "runtime/RegEx.h"
#include "runtime/Text.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/TimedText.h"
#include "timedtext/normalise.h"
#include "timedtext/timecode.h"

// The fields of a document, and the normalised document itself as one more.
inline std::vector<std::string> QuickFields(const std::string& document) {
  const TimedTextFields quick = NormaliseTimedText(document);
  std::vector<std::string> fields;
  std::size_t from = 0;
  for (const std::size_t end : quick.ends) {
    fields.push_back(quick.document.substr(from, end - from));
    from = end + kSeparator.size();
  }
  fields.push_back(quick.document);
  return fields;
}
inline std::vector<std::string> PlainFields(const std::string& document) {
  const std::string normal = NormaliseStepByStep(document);
  std::vector<std::string> fields = Split(normal, kSeparator);
  fields.push_back(normal);
  return fields;
}

// Start and end of a cue as in SRT, its start as in WebVTT and as in a transcript.
inline std::vector<std::string> QuickTimes(const std::string& start, const std::string& dur) {
  TimecodeList times;
  times.AppendStart({start, dur});
  times.AppendEnd({start, dur});
  return {TextOf(times.At(0)), TextOf(times.At(1)), TextOf(times.WithPointAt(0)), StartTimecode(start)};
}
inline std::vector<std::string> PlainTimes(const std::string& start, const std::string& dur) {
  const std::string plain = SecsToTimecode(Val(start));
  const std::string comma = ToCommaTimecode(plain);
  return {comma, ToCommaTimecode(SecsToTimecode(CueEndSeconds({start, dur}))), Replace(comma, ",", "."),
          plain};
}

inline std::string PlainCueText(std::string text) {
  text = ReplaceLineEndings(std::move(text), " ");
  text = ReplaceAll(std::move(text), ChrB(253) + ChrB(255), " ");
  text = ReplaceAll(std::move(text), "\n", " ");
  return ReplaceAll(std::move(text), "\r\n", " ");
}

// Start and length of the first match, or -1 and 0.
inline std::pair<std::int64_t, std::size_t> FirstMatch(RegEx& regex, const std::string& pattern,
                                                       const std::string& target) {
  regex.SearchPattern = pattern;
  const RegExMatch* match = regex.Search(target);
  return match ? std::pair(static_cast<std::int64_t>(match->start), match->length)
               : std::pair(std::int64_t{-1}, std::size_t{0});
}
// The same pattern in a group, so that it is not a plain word.
inline std::string Grouped(const std::string& pattern) { return "(?:" + pattern + ")"; }
