#include "gateway/documents/web_page.h"

#include <algorithm>
#include <array>

namespace gateway {
namespace {

bool StartsWithInAnyCase(std::string_view text, std::string_view small) {
  const auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
  return text.size() >= small.size() &&
         std::equal(small.begin(), small.end(), text.begin(), [&](char s, char t) { return same(t, s); });
}

// Takes blanks, "<?...?>" and "<!--...-->" from the front.
void SkipProlog(std::string_view& text) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kSkipped = {
      {{"<?", "?>"}, {"<!--", "-->"}}};
  for (bool skipped = true; skipped;) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    skipped = false;
    for (const auto& [begin, end] : kSkipped) {
      if (!text.starts_with(begin)) continue;
      text.remove_prefix(std::min(text.find(end), text.size() - end.size()) + end.size());
      skipped = true;
    }
  }
}

}  // namespace

bool IsWebPage(std::string_view text) {
  constexpr std::array<std::string_view, 7> kBeginnings = {"<!doctype html", "<html",   "<head", "<body",
                                                           "<title",         "<script", "<meta"};
  SkipProlog(text);
  return std::any_of(kBeginnings.begin(), kBeginnings.end(),
                     [&](std::string_view beginning) { return StartsWithInAnyCase(text, beginning); });
}

}  // namespace gateway
