// The caption files, SRT and WebVTT. WebVTT is SRT with a header and with points in its timecodes.
//
//   cue = number LF start " --> " end LF text LF eol      eol is the stream's own line end

#include <algorithm>

#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "timedtext/TimedText.h"
#include "timedtext/save.h"
#include "timedtext/timecode.h"

namespace {

constexpr std::string_view LF = EndOfLine.UNIX;

struct Captions {
  std::string trackTitle;
  StringArray starts;
  StringArray ends;
  StringArray texts;
  // A document that breaks the pattern may have more times than texts, or a start without a text.
  std::size_t Count() const { return std::min(starts.size(), texts.size()); }
};

// An end is the cue's own start and duration, whatever the next cue's start is.
std::optional<Captions> FetchCaptions(Window1& form, std::int64_t row) {
  const auto track = FetchTimedText(form, row);
  if (!track) return std::nullopt;
  Captions captions{track->trackTitle, {}, {}, {}};
  for (std::size_t i = 0; i < track->Starts(); ++i) {
    const TimedTextCue cue = track->Times(i);
    Append(captions.ends, ToCommaTimecode(SecsToTimecode(CueEndSeconds(cue))));
    Append(captions.starts, ToCommaTimecode(SecsToTimecode(Val(cue.start))));
    RuntimeBackgroundTask();
  }
  for (std::size_t i = 0; i < track->Cues(); ++i) {
    Append(captions.texts, track->Text(i));
    RuntimeBackgroundTask();
  }
  return captions;
}

void WriteCue(TextOutputStream& out, const Captions& captions, std::size_t i) {
  out.Write(Str(static_cast<std::int64_t>(i) + 1) + std::string(LF));
  out.Write(captions.starts[i] + " --> " + captions.ends[i] + std::string(LF));
  out.Write(captions.texts[i] + std::string(LF));
  out.WriteLine("");
}

}  // namespace

void Window1::DoSRT(std::int64_t row) {
  const auto captions = FetchCaptions(*this, row);
  if (!captions) return;
  const FolderItemPtr file = GetSaveFolderItem("", captions->trackTitle + ".srt");
  if (!file) return;
  const bool saved = SaveFile(file, [&](TextOutputStream& out) {
    for (std::size_t i = 0; i < captions->Count(); ++i) {
      WriteCue(out, *captions, i);
      RuntimeBackgroundTask();
    }
  });
  if (saved && openBox.Value()) file->Launch(true);
}

void Window1::DoVTT(std::int64_t row) {
  auto captions = FetchCaptions(*this, row);
  if (!captions) return;
  const FolderItemPtr file = GetSaveFolderItem("", captions->trackTitle + ".vtt");
  if (!file) return;
  const bool saved = SaveFile(file, [&](TextOutputStream& out) {
    out.WriteLine("WEBVTT" + std::string(LF));
    for (std::size_t i = 0; i < captions->Count(); ++i) {
      captions->starts[i] = Replace(captions->starts[i], ",", ".");
      captions->ends[i] = Replace(captions->ends[i], ",", ".");
      WriteCue(out, *captions, i);
      RuntimeBackgroundTask();
    }
  });
  if (saved && openBox.Value()) file->Launch(true);
}
