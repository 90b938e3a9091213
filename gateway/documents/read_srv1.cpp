// srv1, the site's own and oldest form:
//
//   file = ["<?xml ... ?>"] "<transcript>" *cue "</transcript>"
//   cue  = `<text start="` SECONDS `"` [` dur="` SECONDS `"`] ">" WORDS "</text>"
//
// SECONDS are decimal, with up to three places that count. WORDS are escaped twice.

#include <pugixml.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"
#include "gateway/documents/xml.h"

namespace gateway {

std::string ReadSrv1(std::string text, Cues& cues) {
  pugi::xml_document tree;
  if (std::string fault = ParseXml(text, tree); !fault.empty()) return fault;
  const pugi::xml_node root = tree.child("transcript");
  if (!root) return "this file is not in the srv1 format";
  for (const pugi::xml_node element : root.children("text")) {
    const std::int64_t start = Seconds(element.attribute("start").value()).value_or(0);
    const auto length = Seconds(element.attribute("dur").value());
    AppendWords(cues.words, element);
    cues.Close(start, length ? start + *length : kUntilNext);
  }
  return "";
}

}  // namespace gateway
