// What the target of a request line asks for.
//
// target     = [SCHEME "://" HOST] path ["?" query]     the long form is what a client behind a proxy sends
// track list = /timedtext      ? type=list & v=CODE
// timed text = /api/timedtext  ? & v=CODE & lang=LANG
//
// A client may put a code there as it was pasted, with a tail: "CODE&t=30", "CODE?si=x", "CODE#t", a blank.
// So "?" and "#" inside the query end nothing but the code, the first `v` counts (a tail follows it),
// and the last `lang` (a tail stands in front of it).
#pragma once

#include <string>
#include <string_view>

namespace gateway {

struct CaptionRequest {
  enum class Kind { TrackList, TimedText, Unknown };

  Kind kind = Kind::Unknown;
  std::string code;      // decoded and cut; any bytes at all, perhaps none
  std::string language;  // decoded; any bytes at all, perhaps none
};

CaptionRequest ReadTarget(std::string_view target);

}  // namespace gateway
