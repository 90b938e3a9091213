#include "gateway/documents/xml.h"

#include <algorithm>
#include <pugixml.hpp>

#include "gateway/documents/references.h"

namespace gateway {
namespace {

constexpr std::size_t kNodeSize = 64;
constexpr std::size_t kAttributeSize = 40;

bool BeginsMark(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte >= 0x80 || c == '_' ||
         c == ':' || c == '/' || c == '!' || c == '?';
}

struct Marks {
  std::size_t strayBrackets = 0;
  std::size_t treeSize = 0;  // at most, of the tree that they make
};

// Each "<" makes an element or a text after one, each "=" an attribute.
Marks CountMarks(std::string_view text) {
  Marks marks;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '=') marks.treeSize += kAttributeSize;
    if (text[i] != '<') continue;
    marks.treeSize += kNodeSize;
    if (i + 1 == text.size() || !BeginsMark(text[i + 1])) ++marks.strayBrackets;
  }
  return marks;
}

std::string WithStrayBracketsEscaped(std::string_view text, std::size_t count) {
  std::string escaped;
  escaped.reserve(text.size() + 3 * count);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isStray = text[i] == '<' && (i + 1 == text.size() || !BeginsMark(text[i + 1]));
    isStray ? escaped += "&lt;" : escaped += text[i];
  }
  return escaped;
}

bool DeclaresEntities(const pugi::xml_document& tree) {
  for (const pugi::xml_node node : tree) {
    if (node.type() != pugi::node_doctype) continue;
    if (std::string_view(node.value()).find("<!ENTITY") != std::string_view::npos) return true;
  }
  return false;
}

// The node after this one in document order, below root; null at the end.
pugi::xml_node NextBelow(pugi::xml_node node, const pugi::xml_node& root) {
  if (const pugi::xml_node child = node.first_child()) return child;
  while (node != root && !node.next_sibling()) node = node.parent();
  return node == root ? pugi::xml_node() : node.next_sibling();
}

}  // namespace

std::string ParseXml(std::string& text, pugi::xml_document& tree) {
  const Marks marks = CountMarks(text);
  if (marks.treeSize > kLargestTree) return "this file is too large";
  if (marks.strayBrackets > 0) text = WithStrayBracketsEscaped(text, marks.strayBrackets);
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
