#include "gateway/server/who_asks.h"

#include <algorithm>
#include <array>

#include "gateway/documents/ascii.h"

namespace gateway {
namespace {

constexpr std::string_view kNameMarks = "!#$%&'*+-.^_`|~";

bool IsName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return IsLetter(c) || IsDigit(c) || kNameMarks.find(c) != kNameMarks.npos;
  });
}

std::string_view Trimmed(std::string_view value) {
  const std::size_t first = std::min(value.find_first_not_of(" \t"), value.size());
  return value.substr(first, value.find_last_not_of(" \t") + 1 - first);
}

bool IsPort(std::string_view text) {
  return !text.empty() && text.size() <= 5 && std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsThisMachine(const std::string& host) {
  for (const std::string_view name : {"127.0.0.1", "localhost", "[::1]"}) {
    if (!host.starts_with(name)) continue;
    const std::string_view rest = std::string_view(host).substr(name.size());
    return rest.empty() || (rest.starts_with(':') && IsPort(rest.substr(1)));
  }
  return false;
}

bool IsNone(const std::string& site) { return site == "none"; }
bool Never(const std::string&) { return false; }

// A header that shows who asks, and its allowed values.
struct Rule {
  std::string_view name;
  bool (*allows)(const std::string& value);
};

constexpr std::array<Rule, 4> kRules{
    {{"host", IsThisMachine}, {"origin", Never}, {"referer", Never}, {"sec-fetch-site", IsNone}}};

}  // namespace

bool MayAsk(const RequestHead& head) {
  int hosts = 0;
  for (const std::string& header : head.headers) {
    const std::string line = Lowercase(header);
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::string name = line.substr(0, colon);
    if (colon == line.size() || !IsName(name) || line.find('\r') != line.npos) return false;
    const std::string value(Trimmed(std::string_view(line).substr(colon + 1)));
    for (const Rule& rule : kRules) {
      if (name == rule.name && !rule.allows(value)) return false;
    }
    if (name == "host" && ++hosts > 1) return false;
  }
  return true;
}

}  // namespace gateway
