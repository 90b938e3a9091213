// srv3, the site's:
//
//   file = `<timedtext format="3">` [head] "<body>" *cue "</body></timedtext>"
//   cue  = `<p t="` MS `"` [` d="` MS `"`] [` a="1"`] ">" *(WORDS | `<s` ... ">" WORDS "</s>") "</p>"
//
// Pieces of words follow each other as they stand. A cue with a="1" is the line feed by which a line moves
// up in the site's own player: without words it is nothing.

#include <pugixml.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"
#include "gateway/documents/xml.h"

namespace gateway {

std::string ReadSrv3(std::string text, Cues& cues) {
  pugi::xml_document tree;
  if (std::string fault = ParseXml(text, tree); !fault.empty()) return fault;
  const pugi::xml_node body = tree.child("timedtext").child("body");
  if (!body) return "this file is not in the srv3 format";
  for (const pugi::xml_node element : body.children("p")) {
    const std::int64_t start = Milliseconds(element.attribute("t").value()).value_or(0);
    const auto length = Milliseconds(element.attribute("d").value());
    AppendWords(cues.words, element);
    const bool isAppended = element.attribute("a").as_int() == 1;
    if (isAppended && cues.IsBlankSinceLast()) {
      cues.Drop();
    } else {
      cues.Close(start, length ? start + *length : kUntilNext);
    }
  }
  return "";
}

}  // namespace gateway
