// XML as caption files hold it: no declared entities, nothing from elsewhere, and a bounded tree.
#pragma once

#include <string>
#include <string_view>

namespace pugi {
class xml_document;
class xml_node;
}  // namespace pugi

namespace gateway {

// The most that a tree may take beside its text, in bytes.
inline constexpr std::size_t kLargestTree = 128u << 20;

// Reads text, UTF-8, which is changed and has to outlive the tree. A "<" that begins no mark counts as
// text. Gives why it can't be read, or "".
std::string ParseXml(std::string& text, pugi::xml_document& tree);

// The name without its prefix: "p" of "tt:p".
std::string_view LocalName(const pugi::xml_node& node);

// What a line feed between words is: the end of a line, or a blank, as in formats whose only line end is
// <br/>.
enum class LineFeeds { EndLines, AreBlanks };

// Appends the words inside of node: those of all elements in it one after the other as they stand, a
// line feed for each <br/>, and the references that are left after those of XML resolved once.
void AppendWords(std::string& to, const pugi::xml_node& node, LineFeeds lineFeeds = LineFeeds::EndLines);

}  // namespace gateway
