// The stage that all users of a caption track begin with: takes a document apart into cues, by literal
// replacements and one split.
//
//   document    = declaration "<transcript>" *cue "</transcript>"
//   declaration = `<?xml version="1.0" encoding="utf-8" ?>`        this spelling only
//   cue         = `<text start="` S `" dur="` D `">` T `</text>`   S and D decimal seconds
//
// The separators are placed before any entity is decoded, so that a quotation mark which decoding
// gives never forms one. In a document that breaks the pattern the fields shift; the lists are then
// read as far as both the times and the texts go.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/TextControls.h"
#include "runtime/exceptions.h"
#include "runtime/pieces.h"
#include "timedtext/normalise.h"

struct TimedTextCue {
  std::string_view start;  // decimal seconds, as the document has them
  std::string_view dur;
};

// The words of one cue on their way into a text (see runtime/pieces.h), where they stand on one line:
// line ends, and the byte pair FD FF, become blanks; nothing is trimmed.
struct CueText {
  std::string_view raw;
  // The text itself: as it stands where it holds nothing to replace, which most do, or else in room.
  std::string_view In(std::string& room) const;
};
inline std::size_t MostBytes(CueText text) { return text.raw.size(); }
char* Put(char* to, CueText text);

// One fetched track: its fields are start, dur, text, start, ..., and one last field behind the
// last separator. They lie in the normalised document, which is shared, not copied.
class TimedText {
 public:
  // Of the body of a reply, whatever it is.
  static TimedText From(std::string document);

  std::string trackTitle;  // the language's name, the base of the default file name

  // The cues that have a start, and those that have a text as well: starts stand at the fields
  // 0, 3, 6, ... and texts at 2, 5, 8, ..., each in front of the last field.
  std::size_t Starts() const { return (ends_.size() - 1 + 2) / 3; }
  std::size_t Cues() const { return (ends_.size() - 1) / 3; }
  // start and dur of cue i below Starts().
  TimedTextCue Times(std::size_t i) const { return {Field(3 * i), Field(3 * i + 1)}; }
  // The words of cue i below Cues().
  CueText Text(std::size_t i) const { return {Field(3 * i + 2)}; }
  // OutOfBoundsException for a field that is not there.
  std::string_view Field(std::size_t index) const {
    if (index >= ends_.size()) throw OutOfBoundsException("The document has no field at that index.");
    const std::size_t from = index == 0 ? 0 : ends_[index - 1] + kSeparator.size();
    return {document_->data() + from, ends_[index] - from};
  }
  // The normalised document.
  const SharedText& Document() const { return document_; }
  std::size_t Size() const { return document_->size(); }  // bytes

 private:
  TimedText(SharedText normalised, std::vector<std::uint32_t> ends)
      : document_(std::move(normalised)), ends_(std::move(ends)) {}

  SharedText document_;
  std::vector<std::uint32_t> ends_;
};

// The words of a cue as they stand on one line.
std::string CleanCueText(std::string_view text);
// Start plus duration, by way of its decimal text.
double CueEndSeconds(const TimedTextCue& cue);
