#include "timedtext/normalise.h"

#include <stdexcept>

#include "runtime/Text.h"
#include "timedtext/marks.h"
#include "timedtext/quick_cues.h"

namespace {

struct Step {
  std::string (*replace)(std::string, std::string_view find, std::string_view replacement);
  std::string_view find;
  std::string_view put;
  bool isForHead = false;  // done if the head was taken: it has the first occurrence
};

// In this order. The first two are four characters each, a backslash among them, and no line ends.
constexpr Step kSteps[] = {
    {ReplaceAll, "/\\r/", ""},
    {ReplaceAll, "/\\n/", ""},
    {Replace, marks::kRoot, "", true},
    {Replace, marks::kRootEnd, ""},
    {ReplaceAll, marks::kStart, ""},
    {ReplaceAll, marks::kDur, kSeparator},
    {ReplaceAll, marks::kTagEnd, kSeparator},
    {ReplaceAll, marks::kTextEnd, kSeparator},
    {Replace, marks::kDeclaration, "", true},
    {ReplaceAll, marks::kApostrophe, "'"},
    {ReplaceAll, marks::kQuote, "\""},
};

std::string TakeSteps(std::string text, bool headIsTaken) {
  for (const Step& step : kSteps) {
    if (headIsTaken && step.isForHead) continue;
    text = step.replace(std::move(text), step.find, step.put);
  }
  return text;
}

// Adds the ends of the fields that begin at `from` or later.
void Split(TimedTextFields& fields, std::size_t from) {
  const std::string& text = fields.document;
  if (text.size() > UINT32_MAX) throw std::length_error("The document is too long.");
  for (std::size_t at; (at = text.find(kSeparator, from)) != std::string::npos; from = at + kSeparator.size())
    fields.ends.push_back(static_cast<std::uint32_t>(at));
  fields.ends.push_back(static_cast<std::uint32_t>(text.size()));
}

}  // namespace

std::string NormaliseStepByStep(std::string document) { return TakeSteps(std::move(document), false); }

TimedTextFields NormaliseTimedText(std::string document) {
  TimedTextFields fields;
  QuickCues quick = MoveQuickCues(document);
  if (quick.taken == 0) {
    fields.document = NormaliseStepByStep(std::move(document));
  } else {
    const std::string rest = TakeSteps(document.substr(quick.taken), true);
    document.resize(quick.length);
    fields.document = std::move(document) + rest;
  }
  fields.ends = std::move(quick.ends);
  Split(fields, quick.length);
  return fields;
}
