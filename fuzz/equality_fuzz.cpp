// The fast implementations give the results of the plain ones, byte for byte: the fields of any document, the
// timecodes of any two fields, any field as cue text, and the match of a plain word.
//
//   input = term LF document

#include "runtime/PlainWord.h"
#include "support/Harness.h"
#include "support/plain_ways.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string term = input.Line();
  const std::string document = input.Rest();
  const std::vector<std::string> fields = QuickFields(document);
  HOLDS(fields == PlainFields(document));

  const bool isPlain = PlainWord::From(term).has_value();
  RegEx quick, grouped;
  for (std::size_t i = 0; i + 1 < fields.size(); ++i) {
    HOLDS(QuickTimes(fields[i], fields[i + 1]) == PlainTimes(fields[i], fields[i + 1]));
    HOLDS(CleanCueText(fields[i]) == PlainCueText(fields[i]));
    HOLDS(!isPlain || FirstMatch(quick, term, fields[i]) == FirstMatch(grouped, Grouped(term), fields[i]));
  }
  return 0;
}
