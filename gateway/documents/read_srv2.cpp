// srv2, the site's:
//
//   file = "<timedtext>" *(cue | window) "</timedtext>"
//   cue  = `<text t="` MS `"` [` d="` MS `"`] ">" WORDS "</text>"

#include <pugixml.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"
#include "gateway/documents/xml.h"

namespace gateway {

std::string ReadSrv2(std::string text, Cues& cues) {
  pugi::xml_document tree;
  if (std::string fault = ParseXml(text, tree); !fault.empty()) return fault;
  const pugi::xml_node root = tree.child("timedtext");
  if (!root || root.child("body")) return "this file is not in the srv2 format";
  for (const pugi::xml_node element : root.children("text")) {
    const std::int64_t start = Milliseconds(element.attribute("t").value()).value_or(0);
    const auto length = Milliseconds(element.attribute("d").value());
    AppendWords(cues.words, element);
    cues.Close(start, length ? start + *length : kUntilNext);
  }
  return "";
}

}  // namespace gateway
