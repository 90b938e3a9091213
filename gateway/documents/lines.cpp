#include "gateway/documents/lines.h"

#include <algorithm>

#include "gateway/documents/byte_set.h"

namespace gateway {
namespace {

constexpr ByteSet kMarks("<&{");
constexpr ByteSet kBrackets("<>");
constexpr ByteSet kBraces("{}");

}  // namespace

void UnifyLineEnds(std::string& text) {
  std::size_t from = text.find('\r');
  if (from == std::string::npos) return;
  std::size_t to = from;
  for (; from < text.size(); ++from) {
    if (text[from] == '\r' && text[from + 1] == '\n') continue;
    text[to++] = text[from] == '\r' ? '\n' : text[from];
  }
  text.resize(to);
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

bool AppendMarkedUp(std::string& to, std::string_view text, const Markup& markup) {
  bool timesWords = false;
  // A tag contains no bracket, and braces contain no brace, so the search is linear.
  const auto lengthOfTag = [&]() -> std::size_t {
    const std::size_t end = kBrackets.FindIn(text, 1);
    if (end == text.size() || text[end] != '>') return 0;
    const auto tag = markup.tagOf(text.substr(1, end - 1));
    if (tag == Markup::Tag::None) return 0;
    if (tag == Markup::Tag::Break) to += '\n';
    timesWords = timesWords || tag == Markup::Tag::Time;
    return end + 1;
  };
  const auto lengthOfBrace = [&]() -> std::size_t {
    if (!markup.hasBraces || !text.starts_with("{\\")) return 0;
    const std::size_t end = kBraces.FindIn(text, 1);
    return end == text.size() || text[end] != '}' ? 0 : end + 1;
  };
  while (!text.empty()) {
    const std::size_t plain = kMarks.FindIn(text);
    to += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const std::size_t length = text.front() == '<'   ? lengthOfTag()
                               : text.front() == '{' ? lengthOfBrace()
                                                     : AppendReference(to, text, markup.names);
    if (length == 0) to += text.front();
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return timesWords;
}

}  // namespace gateway
