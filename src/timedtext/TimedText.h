// The first stage of all that uses a caption track: cuts a document into cues, by literal replacements and
// one split.
//
//   document    = declaration "<transcript>" *cue "</transcript>"
//   declaration = `<?xml version="1.0" encoding="utf-8" ?>`        this spelling only
//   cue         = `<text start="` S `" dur="` D `">` T `</text>`   S and D decimal seconds
//
// The separators are put in before any entity is decoded, so that a decoded quotation mark never forms one.
// In a document that breaks the pattern the fields shift; then only cues with both times and a text count.
#pragma once

#include <cstdint>
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

// The words of one cue on one line, as a piece of a text (see runtime/pieces.h): line ends, and the byte pair
// FD FF, become blanks; nothing is trimmed.
struct CueText {
  std::string_view raw;
  // The words without a copy if nothing needs replacing (usual); otherwise built in `buffer`.
  std::string_view In(std::string& buffer) const;
};
inline std::size_t MostBytes(CueText text) { return text.raw.size(); }
char* Put(char* to, CueText text);

// One track: its fields are start, dur, text, start, ..., and one last field after the last separator. They
// are parts of the normalised document, which is shared, not copied.
class TimedText {
 public:
  // Takes any text, well-formed or not.
  static TimedText From(std::string document);

  std::string trackTitle;  // language name, the base of the suggested file name

  // The number of cues with a start, and of those with a text as well: starts are the fields 0, 3, 6, ... and
  // texts 2, 5, 8, ..., all before the last field.
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

// The words of a cue on one line (see CueText).
std::string CleanCueText(std::string_view text);
// Start plus duration; the sum passes through decimal text.
double CueEndSeconds(const TimedTextCue& cue);
