#include <libxml/parser.h>

#include <cstring>

#include "CaptionText.h"
#include "conversion.h"

namespace {

struct Reading {
  CaptionText file;
  std::string start, dur, words;
  bool inCue = false;
};

const char* Chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

void StartElement(void* context, const xmlChar* name, const xmlChar** attributes) {
  auto& reading = *static_cast<Reading*>(context);
  reading.inCue = std::strcmp(Chars(name), "text") == 0;
  if (!reading.inCue) return;
  reading.words.clear();
  for (; attributes && attributes[0]; attributes += 2) {
    if (std::strcmp(Chars(attributes[0]), "start") == 0) reading.start = Chars(attributes[1]);
    if (std::strcmp(Chars(attributes[0]), "dur") == 0) reading.dur = Chars(attributes[1]);
  }
}

void Characters(void* context, const xmlChar* text, int length) {
  auto& reading = *static_cast<Reading*>(context);
  if (reading.inCue) reading.words.append(Chars(text), static_cast<std::size_t>(length));
}

void EndElement(void* context, const xmlChar*) {
  auto& reading = *static_cast<Reading*>(context);
  if (!reading.inCue) return;
  reading.file.AddCue(reading.start, reading.dur, reading.words, "&#39;", "&quot;", true);
  reading.inCue = false;
}

}  // namespace

std::string ConvertByLibxml2(const std::string& document, Form form) {
  Reading reading{CaptionText(form, document.size()), {}, {}, {}};
  xmlSAXHandler handler{};
  handler.startElement = StartElement;
  handler.endElement = EndElement;
  handler.characters = Characters;
  const int failed =
      xmlSAXUserParseMemory(&handler, &reading, document.data(), static_cast<int>(document.size()));
  return failed ? "" : reading.file.Take();
}

std::string CopyByMemchr(const std::string& document) {
  std::string out;
  out.reserve(document.size());
  const char* from = document.data();
  const char* const end = from + document.size();
  while (from < end) {
    const auto* at =
        static_cast<const char*>(std::memchr(from + 1, '<', static_cast<std::size_t>(end - from - 1)));
    if (!at) at = end;
    out.append(from, at);
    from = at;
  }
  return out;
}
