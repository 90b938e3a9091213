#include "gateway/documents/document.h"

#include <algorithm>
#include <charconv>

#include "gateway/documents/Cues.h"
#include "gateway/documents/byte_set.h"

namespace gateway {
namespace {

constexpr std::string_view kHead = R"(<?xml version="1.0" encoding="utf-8" ?><transcript>)";
constexpr std::string_view kFoot = "</transcript>";
constexpr std::string_view kStart = R"(<text start=")";
constexpr std::string_view kDur = R"(" dur=")";
constexpr std::string_view kTagEnd = R"(">)";
constexpr std::string_view kTextEnd = "</text>";
constexpr std::size_t kCueSize = 60;  // without its words, with times of a long video

// The replacements for texts that must not appear in a document. The first row that matches counts; the blank
// before bars has no row.
struct Escape {
  std::string_view text;
  std::string_view replacement;
};

constexpr Escape kEscapes[] = {
    {"'", "&amp;#39;"},
    {"\"", "&amp;quot;"},
    {"</text>", "< /text>"},
    {"&amp;#39;", "&#39;"},
    {"&amp;quot;", "&quot;"},
    {"</transcript>", "<<text start=\"/transcript>"},
    // The last character of one may be the first of the next.
    {"/\\r/", "/<text start=\"\\r"},
    {"/\\n/", "/<text start=\"\\n"},
};

const Escape* EscapeAt(std::string_view text) {
  const auto fits = [&](const Escape& escape) { return text.starts_with(escape.text); };
  const auto* found = std::find_if(std::begin(kEscapes), std::end(kEscapes), fits);
  return found == std::end(kEscapes) ? nullptr : found;
}

// May stop once the document is larger than kLargestDocument.
void AppendWords(std::string& to, std::string_view words) {
  constexpr ByteSet kFirst("'\"<&/|");
  for (std::size_t from = 0;;) {
    const std::size_t at = kFirst.FindIn(words, from);
    to += words.substr(from, at - from);
    if (at == words.size() || to.size() > kLargestDocument) return;
    const std::string_view left = words.substr(at);
    if (at > 0 && words[at - 1] == ' ' && left.starts_with("|||")) to.back() = '\n';
    const Escape* escape = EscapeAt(left);
    escape ? to += escape->replacement : to += left.front();
    const bool mayOverlap = escape && escape->text.back() == '/';
    from = at + (escape ? escape->text.size() - (mayOverlap ? 1 : 0) : 1);
  }
}

void AppendSeconds(std::string& to, std::int64_t milliseconds) {
  char digits[24];
  const auto whole = std::to_chars(std::begin(digits), std::end(digits), milliseconds / 1000);
  to.append(digits, whole.ptr);
  const auto rest = milliseconds % 1000;
  to += '.';
  for (const auto weight : {100, 10, 1}) to += static_cast<char>('0' + rest / weight % 10);
}

}  // namespace

std::optional<std::string> WriteDocument(const Cues& cues) {
  std::string document(kHead);
  document.reserve(cues.words.size() + cues.list.size() * kCueSize + kHead.size());
  for (const Cue& cue : cues.list) {
    document += kStart;
    AppendSeconds(document, cue.start);
    document += kDur;
    AppendSeconds(document, cue.end - cue.start);
    document += kTagEnd;
    AppendWords(document, cues.WordsOf(cue));
    document += kTextEnd;
    if (document.size() > kLargestDocument) return std::nullopt;
  }
  document += kFoot;
  return document;
}

}  // namespace gateway
