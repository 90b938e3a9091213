#include "gateway/server/request_target.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace gateway {
namespace {

// A "%" that is not followed by two hexadecimal digits stays.
std::string Decoded(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* digits = text.data() + i + 1;
    unsigned byte = 0;
    const bool escape = text[i] == '%' && i + 2 < text.size() &&
                        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
    out += escape ? static_cast<char>(byte) : text[i];
    if (escape) i += 2;
  }
  return out;
}

// Cut after decoding, since a tail may arrive as "&t=30" or as "%26t=30".
std::string CodeOf(std::string_view value) {
  std::string code = Decoded(value);
  return code.substr(0, code.find_first_of("&?# \t"));
}

std::string_view WithoutHost(std::string_view target) {
  const std::size_t mark = target.find("://");
  if (target.starts_with('/') || mark == std::string_view::npos) return target;
  const std::size_t path = target.find('/', mark + 3);
  return path == std::string_view::npos ? std::string_view() : target.substr(path);
}

struct Query {
  std::optional<std::string_view> type, code, language;
};

Query ReadQuery(std::string_view text) {
  Query query;
  while (!text.empty()) {
    const std::string_view pair = text.substr(0, text.find('&'));
    text.remove_prefix(std::min(text.size(), pair.size() + 1));
    const std::size_t equals = pair.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = pair.substr(0, equals);
    const std::string_view value = pair.substr(equals + 1);
    if (name == "type" && !query.type) query.type = value;
    if (name == "v" && !query.code) query.code = value;
    if (name == "lang") query.language = value;
  }
  return query;
}

CaptionRequest::Kind KindOf(std::string_view path, const Query& query) {
  if (path == "/timedtext" && query.type == "list") return CaptionRequest::Kind::TrackList;
  if (path == "/api/timedtext") return CaptionRequest::Kind::TimedText;
  return CaptionRequest::Kind::Unknown;
}

}  // namespace

CaptionRequest ReadTarget(std::string_view target) {
  target = WithoutHost(target);
  const std::size_t mark = std::min(target.find('?'), target.size());
  const Query query = ReadQuery(target.substr(std::min(mark + 1, target.size())));
  return {KindOf(target.substr(0, mark), query), CodeOf(query.code.value_or("")),
          Decoded(query.language.value_or(""))};
}

}  // namespace gateway
