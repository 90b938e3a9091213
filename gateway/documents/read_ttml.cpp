// TTML:
//
//   file  = "<tt" [frameRate] [frameRateMultiplier] [tickRate] ">" [head] "<body>" *div "</body></tt>"
//   div   = "<div>" *(div | cue) "</div>"
//   cue   = `<p begin="` TIME `" end="` TIME `">` *(WORDS | "<br/>" | span) "</p>"
//   TIME  = clock [":" FRAMES] | NUMBER ["h" | "m" | "s" | "ms" | "f" | "t"]    "s" if there is no unit
//
// A "dur" may replace the end, and all times are relative to the begin of the parent element. In a paragraph
// without times, each span with a begin is a cue. Names may have any prefix. Line feeds are blanks; only
// <br/> ends a line.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <pugixml.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/times.h"
#include "gateway/documents/xml.h"

namespace gateway {
namespace {

constexpr int kDeepest = 100;  // elements that contain a cue

std::string_view ValueOf(const pugi::xml_node& element, std::string_view localName) {
  for (const pugi::xml_attribute attribute : element.attributes()) {
    const std::string_view name = attribute.name();
    if (name.substr(name.find(':') + 1) == localName) return attribute.value();
  }
  return "";
}

// Takes a decimal number from the front of text.
std::optional<double> TakeNumber(std::string_view& text) {
  double value = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error != std::errc() || !std::isfinite(value) || value < 0) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

double PositiveOr(std::string_view text, double other) {
  const auto value = TakeNumber(text);
  return value && *value > 0 ? *value : other;
}

// The length of a frame and of a tick, in milliseconds.
struct Rates {
  double frame = 0;
  double tick = 0;

  explicit Rates(const pugi::xml_node& root) {
    std::string_view multiplier = ValueOf(root, "frameRateMultiplier");
    const double numerator = TakeNumber(multiplier).value_or(1);
    const double denominator = PositiveOr(multiplier.substr(std::min<std::size_t>(1, multiplier.size())), 1);
    const std::string_view rate = ValueOf(root, "frameRate");
    const double frames = PositiveOr(rate, 30) * (numerator > 0 ? numerator / denominator : 1);
    frame = 1000 / frames;
    tick = 1000 / PositiveOr(ValueOf(root, "tickRate"), rate.empty() ? 1 : frames);
  }
};

struct Unit {
  std::string_view name;
  double milliseconds;
};

std::optional<std::int64_t> Rounded(double milliseconds) {
  if (!(milliseconds < static_cast<double>(kLatestTime))) return kLatestTime;  // NaN too
  return static_cast<std::int64_t>(std::llround(milliseconds));
}

std::optional<std::int64_t> Time(std::string_view text, const Rates& rates) {
  if (const auto clock = TakeClock(text)) {
    if (!text.starts_with(':')) return clock;
    text.remove_prefix(1);
    return Rounded(static_cast<double>(*clock) + TakeNumber(text).value_or(0) * rates.frame);
  }
  const auto number = TakeNumber(text);
  if (!number) return std::nullopt;
  for (const Unit& unit : {Unit{"h", 3'600'000},
                           {"m", 60'000},
                           {"s", 1000},
                           {"ms", 1},
                           {"f", rates.frame},
                           {"t", rates.tick},
                           {"", 1000}}) {
    if (text == unit.name) return Rounded(*number * unit.milliseconds);
  }
  return std::nullopt;
}

class BodyReader {
 public:
  BodyReader(const pugi::xml_node& root, Cues& cues) : rates_(root), cues_(cues) {}

  // Reads the cues inside element, whose own times count from base. False if they are nested too deeply.
  bool Read(const pugi::xml_node& element, std::int64_t base, int depth) {
    if (depth > kDeepest) return false;
    base += TimeOf(element, "begin").value_or(0);
    for (const pugi::xml_node inner : element.children()) {
      if (inner.type() != pugi::node_element) continue;
      if (IsCue(inner)) {
        Close(inner, base);
      } else if (!Read(inner, base, depth + 1)) {
        return false;
      }
    }
    return true;
  }

 private:
  std::optional<std::int64_t> TimeOf(const pugi::xml_node& element, std::string_view name) const {
    return Time(ValueOf(element, name), rates_);
  }
  bool IsCue(const pugi::xml_node& element) const {
    if (LocalName(element) == "span") return true;
    if (LocalName(element) != "p") return false;
    if (TimeOf(element, "begin") || TimeOf(element, "end")) return true;
    for (const pugi::xml_node inner : element.children()) {
      if (LocalName(inner) == "span" && TimeOf(inner, "begin")) return false;
    }
    return true;
  }
  void Close(const pugi::xml_node& element, std::int64_t base) {
    const std::int64_t start = base + TimeOf(element, "begin").value_or(0);
    const auto length = TimeOf(element, "dur");
    const auto end = TimeOf(element, "end");
    std::int64_t until = end ? base + *end : kUntilNext;
    if (length) until = end ? std::min(until, start + *length) : start + *length;
    AppendWords(cues_.words, element, LineFeeds::AreBlanks);
    cues_.Close(start, until);
  }

  const Rates rates_;
  Cues& cues_;
};

}  // namespace

std::string ReadTtml(std::string text, Cues& cues) {
  pugi::xml_document tree;
  if (std::string fault = ParseXml(text, tree); !fault.empty()) return fault;
  const pugi::xml_node root = tree.document_element();
  if (LocalName(root) != "tt") return "this file is not in the ttml format";
  for (const pugi::xml_node element : root.children()) {
    if (LocalName(element) != "body") continue;
    if (!BodyReader(root, cues).Read(element, 0, 0)) return "this file is nested too deeply";
  }
  return "";
}

}  // namespace gateway
