// Reads the target of a request line.
//
// target     = [SCHEME "://" HOST] path ["?" query]     the long form is sent by a client that uses a proxy
// track list = /timedtext      ? type=list & v=CODE
// timed text = /api/timedtext  ? & v=CODE & lang=LANG
//
// CODE may be pasted text with a tail: "CODE&t=30", "CODE?si=x", "CODE#t", a blank. So "?" and "#" inside the
// query end only the code; the first `v` counts, since a tail follows it, and the last `lang`, since a tail
// precedes it.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

struct CaptionRequest {
  enum class Kind { TrackList, TimedText, Unknown };

  Kind kind = Kind::Unknown;
  std::string code;      // decoded, without its tail; any bytes, may be empty
  std::string language;  // decoded; any bytes, may be empty
};

CaptionRequest ReadTarget(std::string_view target);

}  // namespace gateway
