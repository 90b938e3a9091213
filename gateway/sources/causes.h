// Why the site gives no captions: the messages of yt-dlp, translated for the user.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "gateway/sources/Child.h"

namespace gateway {

// What a cause entails, besides being shown.
enum class Effect {
  None,         // the next request may succeed
  Relist,       // the list's links may have expired
  Pause,        // no requests to the site for a while
  Verdict,      // the site's own statement on this video: remembered for some minutes
  Unavailable,  // the same, but the site may state it of any video to an old yt-dlp
  NoCaptions,   // the video has no captions: remembered for an hour
  Outdated,     // may be due to an old yt-dlp
};

struct Cause {
  std::string sentence;  // English, ASCII, at most 200 bytes; "": no cause
  Effect effect = Effect::None;
};

// From the messages of yt-dlp: clear errors, then clear warnings, then vague errors, each in the order of the
// table of causes. No sentence if none is known.
Cause CauseIn(std::string_view messages);
// Why tracks may be missing from a list that is not empty.
Cause GapIn(std::string_view messages);

// From how a child ended, for messages without a known cause.
Cause CauseOf(const ChildEnd& end);

// Adds the doubt about this version of yt-dlp to the cause, or replaces the cause with it, unless the effect
// is Verdict or Pause.
Cause WithDoubtAbout(std::string_view version, std::chrono::sys_days today, Cause cause);

// The lines to log: errors and warnings, else the last line.
std::string LinesToLog(std::string_view messages);

}  // namespace gateway
