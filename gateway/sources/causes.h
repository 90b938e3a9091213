// Why the site has nothing to give: yt-dlp's words, sorted into what a user understands.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "gateway/sources/Child.h"

namespace gateway {

// What follows from a cause, beside its being shown.
enum class Effect {
  None,         // asked again, the site may answer otherwise
  Relist,       // the list's links may be out of date
  Pause,        // the site wants to be left alone for a while
  Verdict,      // the site's own word on this video: holds for some minutes
  Unavailable,  // the same, but the site may say so of any video to an old yt-dlp
  Silent,       // the video has no captions: holds for an hour
  Outdated,     // an old yt-dlp explains it
};

struct Cause {
  std::string sentence;  // English, ASCII, at most 200 bytes; "" for no cause
  Effect effect = Effect::None;
};

// From what yt-dlp wrote to standard error: its errors first, then its warnings, each in the order of the
// table of causes; then what errors say vaguely. No sentence if nothing is known of it.
Cause CauseIn(std::string_view messages);
// Why tracks may be missing from a list that has some.
Cause GapIn(std::string_view messages);

// From how a child ended, where its messages say nothing.
Cause CauseOf(const ChildEnd& end);

// cause, with what speaks against this version of yt-dlp on this day beside it or in its place, unless the
// site was plain about the video or wants to be left alone.
Cause InLightOf(std::string_view version, std::chrono::sys_days today, Cause cause);

// The lines that a log should keep: errors and warnings, else the last.
std::string WordsWorthKeeping(std::string_view messages);

}  // namespace gateway
