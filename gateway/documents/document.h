// Writes the document that the program reads:
//
//   document = `<?xml version="1.0" encoding="utf-8" ?><transcript>` *cue "</transcript>"
//   cue      = `<text start="` SECONDS `" dur="` SECONDS `">` WORDS "</text>"
//   SECONDS  = 1*DIGIT "." 3DIGIT
//
// The program parses it by literal replacements on the whole text. In this order, it removes every `/\r/` and
// `/\n/` (a backslash and a letter), the first "<transcript>" and "</transcript>", and every `<text start="`;
// it turns every `" dur="`, `">` and "</text>" into " ||| ", at which the text is split at the end. Before
// the split, "&amp;#39;" becomes an apostrophe and "&amp;quot;" a quotation mark. Any other reference stays
// as it is, and a line feed becomes a blank. So the document is not XML in general: words contain "&", "<"
// and ">" unescaped. Words that contain one of these marks are written differently:
//
//   '  "                            "&amp;#39;" and "&amp;quot;"
//   ` |||`                          a line feed in place of the blank
//   `/\r/`  `/\n/`  "</transcript>" `<text start="` after the first character: its removal restores the words
//                                   when these marks are no longer looked for
//   "</text>"                       "< /text>"        these three can't be represented
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
