#include "gateway/documents/xml.h"

#include <algorithm>
#include <pugixml.hpp>

#include "gateway/documents/ascii.h"
#include "gateway/documents/encoding.h"
#include "gateway/documents/references.h"

namespace gateway {
namespace {

constexpr std::size_t kNodeSize = 64;
constexpr std::size_t kAttributeSize = 40;

bool BeginsMark(char c) {
  return IsLetter(c) || static_cast<unsigned char>(c) >= 0x80 || c == '_' || c == ':' || c == '/' ||
         c == '!' || c == '?';
}

bool IsStray(std::string_view text, std::size_t bracket) {
  return bracket + 1 == text.size() || !BeginsMark(text[bracket + 1]);
}

// Whether the text after the tag at the start of part becomes a node of its own; part extends to the next
// tag. The text after an opening tag is stored in its element.
bool MakesTextNode(std::string_view part) {
  if (part.back() == '>') return false;
  const std::size_t end = part.find('>');
  return part.starts_with("</") || (end != std::string_view::npos && part[end - 1] == '/');
}

std::size_t MostTreeSize(std::string_view text) {
  const auto attributes = static_cast<std::size_t>(std::count(text.begin(), text.end(), '='));
  std::size_t nodes = 0;
  for (std::size_t at = text.find('<'); at < text.size();) {
    const std::size_t next = std::min(text.find('<', at + 1), text.size());
    const std::string_view part = text.substr(at, next - at);
    nodes += part.starts_with("</") ? 0 : 1;
    nodes += MakesTextNode(part) ? 1 : 0;
    at = next;
  }
  return nodes * kNodeSize + attributes * kAttributeSize;
}

// False if the text would be larger than kLargestText.
bool EscapeStrayBrackets(std::string& text) {
  std::string escaped;
  std::size_t from = 0;
  for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    if (!IsStray(text, at)) continue;
    escaped.append(text, from, at - from).append("&lt;");
    from = at + 1;
    if (escaped.size() + text.size() - from > kLargestText) return false;
  }
  if (from > 0) text = escaped.append(text, from, std::string::npos);
  return true;
}

bool DeclaresEntities(const pugi::xml_document& tree) {
  for (const pugi::xml_node node : tree) {
    if (node.type() != pugi::node_doctype) continue;
    if (std::string_view(node.value()).find("<!ENTITY") != std::string_view::npos) return true;
  }
  return false;
}

// The next node in document order below root; null at the end.
pugi::xml_node NextBelow(pugi::xml_node node, const pugi::xml_node& root) {
  if (const pugi::xml_node child = node.first_child()) return child;
  while (node != root && !node.next_sibling()) node = node.parent();
  return node == root ? pugi::xml_node() : node.next_sibling();
}

}  // namespace

std::string ParseXml(std::string& text, pugi::xml_document& tree) {
  if (!EscapeStrayBrackets(text) || MostTreeSize(text) > kLargestTree) return "this file is too large";
  constexpr unsigned kOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                pugi::parse_doctype | pugi::parse_ws_pcdata | pugi::parse_embed_pcdata;
  const auto result = tree.load_buffer_inplace(text.data(), text.size(), kOptions, pugi::encoding_utf8);
  if (!result) return "this file is damaged";
  if (DeclaresEntities(tree)) return "this file declares entities";
  return "";
}

std::string_view LocalName(const pugi::xml_node& node) {
  const std::string_view name = node.name();
  return name.substr(name.find(':') + 1);
}

void AppendWords(std::string& to, const pugi::xml_node& node, LineFeeds lineFeeds) {
  const auto append = [&](const pugi::xml_node& part) {
    const auto from = static_cast<std::ptrdiff_t>(to.size());
    AppendResolved(to, part.value(), WebCharacters());
    if (lineFeeds == LineFeeds::AreBlanks) std::replace(to.begin() + from, to.end(), '\n', ' ');
  };
  append(node);
  for (auto inner = NextBelow(node, node); inner; inner = NextBelow(inner, node)) {
    if (inner.type() == pugi::node_element && LocalName(inner) == "br") to += '\n';
    append(inner);
  }
}

}  // namespace gateway
