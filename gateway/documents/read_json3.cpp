// json3, the site's own JSON format:
//
//   file    = { ..., "events": [ *event ] }
//   event   = { "tStartMs": MS, "dDurationMs": MS, "segs": [ *segment ], "aAppend": 1 }
//   segment = { "utf8": WORDS, ... }
//
// All members are optional. Segments are joined without a separator. An event without segments defines a
// window; an appended one without words is the line feed that moves a line up in the site's own player.

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "gateway/documents/Cues.h"
#include "gateway/documents/readers.h"

namespace gateway {
namespace {

using Json = nlohmann::json;

// Collects the cues during parsing, so that no tree is built.
class EventTaker final : public nlohmann::json_sax<Json> {
 public:
  explicit EventTaker(Cues& cues) : cues_(cues) {}

  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool number_integer(number_integer_t value) override { return TakeNumber(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return TakeNumber(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) override { return TakeNumber(value); }
  bool string(string_t& value) override {
    if (depth_ == kSegment && IsInEvents() && keys_[kEvent] == "segs" && keys_[kSegment] == "utf8")
      cues_.words += value;
    return true;
  }
  bool key(string_t& value) override {
    if (depth_ < keys_.size()) keys_[depth_] = value;
    return true;
  }
  bool start_object(std::size_t) override {
    if (++depth_ == kEvent) event_ = {};
    return true;
  }
  bool end_object() override {
    if (depth_ == kEvent && IsInEvents()) CloseEvent();
    --depth_;
    return true;
  }
  bool start_array(std::size_t) override {
    ++depth_;
    if (depth_ < keys_.size()) keys_[depth_].clear();  // the members of an array have no keys
    sawEvents_ = sawEvents_ || (depth_ == kFile + 1 && IsInEvents());
    return true;
  }
  bool end_array() override {
    --depth_;
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override { return false; }

  bool SawEvents() const { return sawEvents_; }

 private:
  // Nesting: the file's object, the list of events (2), an event, its list of segments (4), a segment.
  static constexpr std::size_t kFile = 1, kEvent = 3, kSegment = 5;

  struct Event {
    double start = 0;
    double length = -1;  // -1: until the next event
    bool isAppended = false;
  };

  bool IsInEvents() const { return keys_[kFile] == "events"; }
  bool TakeNumber(double value) {
    if (depth_ != kEvent || !IsInEvents()) return true;
    const std::string& name = keys_[kEvent];
    if (name == "tStartMs") event_.start = Bounded(value);
    if (name == "dDurationMs") event_.length = Bounded(value);
    if (name == "aAppend") event_.isAppended = value == 1;
    return true;
  }
  static double Bounded(double value) {
    return std::floor(std::clamp(value, 0.0, static_cast<double>(kLatestTime)));
  }
  void CloseEvent() {
    const auto start = static_cast<std::int64_t>(event_.start);
    if (cues_.IsBlankSinceLast() && event_.isAppended) return cues_.Drop();
    cues_.Close(start, event_.length < 0 ? kUntilNext : start + static_cast<std::int64_t>(event_.length));
  }

  Cues& cues_;
  std::size_t depth_ = 0;
  std::array<std::string, kSegment + 1> keys_;  // the last key at each depth
  Event event_;
  bool sawEvents_ = false;
};

}  // namespace

std::string ReadJson3(std::string text, Cues& cues) {
  EventTaker taker(cues);
  if (!Json::sax_parse(text, &taker)) return "this file is damaged";
  return taker.SawEvents() ? "" : "this file is not in the json3 format";
}

}  // namespace gateway
