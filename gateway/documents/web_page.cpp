#include "gateway/documents/web_page.h"

#include <algorithm>
#include <array>

#include "gateway/documents/ascii.h"

namespace gateway {
namespace {

// Removes blanks, "<?...?>" and "<!--...-->" from the front.
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
  constexpr std::string_view kLongest = "<!doctype html";
  constexpr std::array<std::string_view, 7> kBeginnings = {kLongest, "<html",   "<head", "<body",
                                                           "<title", "<script", "<meta"};
  SkipProlog(text);
  const std::string start = Lowercase(text.substr(0, kLongest.size()));
  return std::any_of(kBeginnings.begin(), kBeginnings.end(),
                     [&](std::string_view beginning) { return start.starts_with(beginning); });
}

}  // namespace gateway
