#include "app/pasted_link.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "app/Endpoints.h"
#include "runtime/Text.h"

namespace {

constexpr std::size_t kCodeLength = 11;
constexpr std::size_t kLongestQuery = 512;  // bytes; limits the work on many beginnings of links
constexpr std::array<std::string_view, 5> kFolders = {"/shorts/", "/live/", "/embed/", "/v/", "/e/"};
constexpr std::array<std::string_view, 4> kSubdomains = {"", "www.", "m.", "music."};

bool IsCodeCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '-';
}

// The code that text begins with; "" if it begins with none.
std::string_view CodeAtStart(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsCodeCharacter);
  return end - text.begin() == kCodeLength ? text.substr(0, kCodeLength) : "";
}

// The value of the first parameter "v"; a link that was copied out of a page may have "&amp;" between them.
std::string_view CodeInQuery(std::string_view query) {
  query = query.substr(0, kLongestQuery);
  query = query.substr(0, query.find_first_of("# \t\r\n\"<>"));
  while (!query.empty()) {
    if (query.starts_with("amp;")) query.remove_prefix(4);
    if (query.starts_with("v=")) return CodeAtStart(query.substr(2));
    query.remove_prefix(std::min(query.find('&'), query.size() - 1) + 1);
  }
  return "";
}

struct Host {
  std::string name;  // in lower case
  bool isShort;
};

// text begins with the path, lower is the same in lower case.
std::string_view CodeInPath(std::string_view text, std::string_view lower, bool isShort) {
  if (isShort) return text.starts_with('/') ? CodeAtStart(text.substr(1)) : "";
  for (const std::string_view watch : {"/watch?", "/watch/?"})
    if (lower.starts_with(watch)) return CodeInQuery(text.substr(watch.size()));
  for (const std::string_view folder : kFolders)
    if (lower.starts_with(folder)) return CodeAtStart(text.substr(folder.size()));
  return "";
}

// "www.site.example" gives "site.example" and "site-nocookie.example", each with every subdomain.
std::vector<Host> HostsOf(const Endpoints& endpoints) {
  std::string site = Lowercase(endpoints.WatchPageBase);
  if (site.starts_with("www.")) site.erase(0, 4);
  std::string embedded = site;
  embedded.insert(std::min(site.find('.'), site.size()), "-nocookie");
  std::vector<Host> hosts;
  for (const std::string_view subdomain : kSubdomains) {
    for (const std::string& name : {site, embedded}) hosts.push_back({std::string(subdomain) + name, false});
    hosts.push_back({std::string(subdomain) + Lowercase(endpoints.ShortLinkHost), true});
  }
  return hosts;
}

// Whether a name may begin there: not in the middle of another one, of an address or of a mail address.
bool IsStart(std::string_view text, std::size_t at) {
  return at == 0 || (!IsCodeCharacter(text[at - 1]) && text[at - 1] != '.' && text[at - 1] != '@');
}

std::string_view CodeOfHostAt(std::string_view text, std::string_view lower, std::size_t at,
                              const std::vector<Host>& hosts) {
  for (const Host& host : hosts) {
    if (!lower.substr(at).starts_with(host.name)) continue;
    const std::size_t path = at + host.name.size();
    const std::string_view code = CodeInPath(text.substr(path), lower.substr(path), host.isShort);
    if (!code.empty()) return code;
  }
  return "";
}

std::string_view FirstCode(std::string_view text, const Endpoints& endpoints) {
  const std::string lower = Lowercase(text);
  const std::vector<Host> hosts = HostsOf(endpoints);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!IsStart(text, at)) continue;
    if (const std::string_view code = CodeOfHostAt(text, lower, at, hosts); !code.empty()) return code;
  }
  return "";
}

}  // namespace

std::string PastedLink(const std::string& text, const Endpoints& endpoints) {
  const std::string trimmed = Trim(text);
  std::string_view code = trimmed.size() == kCodeLength ? CodeAtStart(trimmed) : "";
  if (code.empty()) code = FirstCode(text, endpoints);
  return code.empty() ? text : endpoints.WatchPage(std::string(code));
}
