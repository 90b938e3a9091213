// The one writer of what the program reads:
//
//   document = `<?xml version="1.0" encoding="utf-8" ?><transcript>` *cue "</transcript>"
//   cue      = `<text start="` SECONDS `" dur="` SECONDS `">` WORDS "</text>"
//   SECONDS  = 1*DIGIT "." 3DIGIT
//
// The program takes it apart by literal replacements on the whole text, in this order: every `/\r/` and
// `/\n/` (a backslash and a letter) goes, then the first "<transcript>" and "</transcript>", then every
// `<text start="`; every `" dur="`, `">` and "</text>" becomes " ||| ", by which the text is cut at the end;
// before that "&amp;#39;" becomes an apostrophe and "&amp;quot;" a quotation mark. Any other reference stays
// as it is, and a line feed becomes a blank. So the document is no XML in general: words hold "&", "<" and
// ">" as they are. No words form a mark of these:
//
//   '  "                            "&amp;#39;" and "&amp;quot;"
//   ` |||`                          a line feed for the blank
//   `/\r/`  `/\n/`  "</transcript>" `<text start="` after the first character, whose removal joins them when
//                                   they are no more looked for
//   "</text>"                       "< /text>"        these three can't be carried
//   "&amp;#39;"  "&amp;quot;"       "&#39;"  "&quot;"
#pragma once

#include <optional>
#include <string>

namespace gateway {

class Cues;

// The largest document, in bytes.
inline constexpr std::size_t kLargestDocument = 96u << 20;

// nullopt if it would be larger than kLargestDocument.
std::optional<std::string> WriteDocument(const Cues& cues);

}  // namespace gateway
