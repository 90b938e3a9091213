// SubRip:
//
//   file  = *cue
//   cue   = [index] time-line *line
//   index = a line of digits alone, directly above the time line
//
// A cue's words extend to the next cue or the end of the file, over empty lines too, which the author may
// have intended.

#include <algorithm>
#include <array>
#include <optional>

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"
#include "gateway/documents/lines.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"

namespace gateway {
namespace {

constexpr std::array<std::string_view, 10> kTags = {"b",  "c",    "em", "font",   "i",
                                                    "rt", "ruby", "s",  "strong", "u"};

// Any other text in brackets is part of the words: "<sighs>".
Markup::Tag TagOf(std::string_view inside) {
  if (inside.starts_with('/')) inside.remove_prefix(1);
  const std::string name = Lowercase(inside.substr(0, inside.find_first_of(" \t\n/.=")));
  if (name == "br") return Markup::Tag::Break;
  return std::find(kTags.begin(), kTags.end(), name) != kTags.end() ? Markup::Tag::Mark : Markup::Tag::None;
}

const Markup kMarkup = {TagOf, true, PlainCharacters()};

bool IsIndex(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  const std::size_t last = line.find_last_not_of(" \t");
  if (first == std::string_view::npos) return false;
  return line.substr(first, last - first + 1).find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::string ReadSrt(std::string text, Cues& cues) {
  UnifyLineEnds(text);
  std::optional<Times> open;
  std::string_view words = text;  // of the open cue; may end with an index
  std::string_view before;        // the previous line
  const auto close = [&](std::size_t length) {
    if (open)
      cues.Close(open->start, open->end, AppendMarkedUp(cues.words, words.substr(0, length), kMarkup));
  };
  for (std::string_view left = text; !left.empty();) {
    const std::string_view line = TakeLine(left);
    const auto times = ReadTimeLine(line);
    if (times) {
      close(words.size() - (IsIndex(before) ? before.size() + 1 : 0));
      open = times;
      words = left.substr(0, 0);
      before = {};
    } else {
      words = {words.data(), static_cast<std::size_t>(left.data() - words.data())};
      before = line;
    }
  }
  close(words.size());
  return "";
}

}  // namespace gateway
