// A restricted XML parser for caption files: refuses files that declare entities or whose tree would take too
// much memory, and reads nothing but the file.
#pragma once

#include <string>
#include <string_view>

namespace pugi {
class xml_document;
class xml_node;
}  // namespace pugi

namespace gateway {

// The most memory that a tree may take besides its text, in bytes.
inline constexpr std::size_t kLargestTree = 128u << 20;

// Parses text, in UTF-8, in place. A "<" that does not begin a tag, a comment or the like is plain text.
// Returns why it can't be parsed, or "". Requires: text outlives the tree.
std::string ParseXml(std::string& text, pugi::xml_document& tree);

// The name without its prefix: "p" of "tt:p".
std::string_view LocalName(const pugi::xml_node& node);

// The meaning of a line feed between words: the end of a line, or a blank, if only <br/> ends lines.
enum class LineFeeds { EndLines, AreBlanks };

// Appends the words of node and of all elements inside it, in document order and without separators, with a
// line feed for each <br/>. References that remain after XML's own were resolved are resolved once.
void AppendWords(std::string& to, const pugi::xml_node& node, LineFeeds lineFeeds = LineFeeds::EndLines);

}  // namespace gateway
