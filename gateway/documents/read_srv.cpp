// The site's own XML formats. srv1, the oldest:
//
//   file = ["<?xml ... ?>"] "<transcript>" *cue "</transcript>"
//   cue  = `<text start="` SECONDS `"` [` dur="` SECONDS `"`] ">" WORDS "</text>"
//
// SECONDS are decimal, and three decimal places count. WORDS are escaped twice. srv2:
//
//   file = "<timedtext>" *(cue | window) "</timedtext>"
//   cue  = `<text t="` MS `"` [` d="` MS `"`] ">" WORDS "</text>"
//
// srv3:
//
//   file = `<timedtext format="3">` [head] "<body>" *cue "</body></timedtext>"
//   cue  = `<p t="` MS `"` [` d="` MS `"`] [` a="1"`] ">" *(WORDS | `<s` ... ">" WORDS "</s>") "</p>"
//
// Pieces of words are joined without a separator. A cue with a="1" is the line feed that moves a line up in
// the site's own player; without words it is skipped.

#include <pugixml.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"
#include "gateway/documents/xml.h"

namespace gateway {
namespace {

struct Format {
  pugi::xml_node (*parent)(const pugi::xml_document& tree);  // of the cues; null in a file of another format
  const char* fault;                                         // if there is no parent
  const char *cue, *start, *length;                          // an element and two of its attributes
  std::optional<std::int64_t> (*time)(std::string_view value);
  bool hasLineFeeds;  // cues with a="1"
};

constexpr Format kSrv1{[](const pugi::xml_document& tree) { return tree.child("transcript"); },
                       "this file is not in the srv1 format",
                       "text",
                       "start",
                       "dur",
                       Seconds,
                       false};
constexpr Format kSrv2{[](const pugi::xml_document& tree) {
                         const pugi::xml_node root = tree.child("timedtext");
                         return root.child("body") ? pugi::xml_node() : root;
                       },
                       "this file is not in the srv2 format",
                       "text",
                       "t",
                       "d",
                       Milliseconds,
                       false};
constexpr Format kSrv3{[](const pugi::xml_document& tree) { return tree.child("timedtext").child("body"); },
                       "this file is not in the srv3 format",
                       "p",
                       "t",
                       "d",
                       Milliseconds,
                       true};

std::string Read(std::string text, Cues& cues, const Format& format) {
  pugi::xml_document tree;
  if (std::string fault = ParseXml(text, tree); !fault.empty()) return fault;
  const pugi::xml_node parent = format.parent(tree);
  if (!parent) return format.fault;
  for (const pugi::xml_node element : parent.children(format.cue)) {
    const std::int64_t start = format.time(element.attribute(format.start).value()).value_or(0);
    const auto length = format.time(element.attribute(format.length).value());
    AppendWords(cues.words, element);
    if (format.hasLineFeeds && element.attribute("a").as_int() == 1 && cues.IsBlankSinceLast()) {
      cues.Drop();
    } else {
      cues.Close(start, length ? start + *length : kUntilNext);
    }
  }
  return "";
}

}  // namespace

std::string ReadSrv1(std::string text, Cues& cues) { return Read(std::move(text), cues, kSrv1); }
std::string ReadSrv2(std::string text, Cues& cues) { return Read(std::move(text), cues, kSrv2); }
std::string ReadSrv3(std::string text, Cues& cues) { return Read(std::move(text), cues, kSrv3); }

}  // namespace gateway
