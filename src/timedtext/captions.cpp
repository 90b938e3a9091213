#include "timedtext/captions.h"

#include <algorithm>

#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "timedtext/save.h"
#include "timedtext/timecode.h"

namespace {

constexpr std::string_view LF = EndOfLine.UNIX;

void WriteCue(TextOutputStream& out, std::size_t i, std::string_view start, std::string_view end,
              std::string_view text) {
  out.Write({Str(static_cast<std::int64_t>(i) + 1), LF, start, " --> ", end, LF, text, LF});
  out.WriteLine("");
}

// One track, from the request to the opened file; the two formats differ in their last piece.
void SaveCaptions(Window1& form, std::int64_t row, const char* extension,
                  void (*write)(TextOutputStream&, const Captions&)) {
  auto track = FetchTimedText(form, row);
  if (!track) return;
  const std::string name = track->trackTitle + extension;
  const Captions captions = FormCaptions(std::move(*track));
  const FolderItemPtr file = GetSaveFolderItem("", name);
  if (!file) return;
  const bool saved = SaveFile(file, [&](TextOutputStream& out) { write(out, captions); });
  if (saved && form.openBox.Value()) file->Launch(true);
}

}  // namespace

std::size_t Captions::Count() const { return std::min(starts.Count(), texts.Count()); }

// An end is the cue's own start and duration, whatever the next cue's start is.
Captions FormCaptions(TimedText track) {
  constexpr std::size_t kTimecode = 12;  // bytes, below a hundred hours
  TextList starts, ends;
  starts.Reserve(track.Starts(), track.Starts() * kTimecode);
  ends.Reserve(track.Starts(), track.Starts() * kTimecode);
  for (std::size_t i = 0; i < track.Starts(); ++i) {
    const TimedTextCue cue = track.Times(i);
    ends.Append(ToCommaTimecode(EndTimecode(cue.start, cue.dur)));
    starts.Append(ToCommaTimecode(StartTimecode(cue.start)));
    RuntimeBackgroundTask();
  }
  return {std::move(starts), std::move(ends), CueTexts(std::move(track))};
}

void WriteSRT(TextOutputStream& out, const Captions& captions) {
  for (std::size_t i = 0; i < captions.Count(); ++i) {
    WriteCue(out, i, captions.starts.At(i), captions.ends.At(i), captions.texts.At(i));
    RuntimeBackgroundTask();
  }
}

void WriteVTT(TextOutputStream& out, const Captions& captions) {
  out.WriteLine("WEBVTT" + std::string(LF));
  for (std::size_t i = 0; i < captions.Count(); ++i) {
    const std::string start = Replace(std::string(captions.starts.At(i)), ",", ".");
    const std::string end = Replace(std::string(captions.ends.At(i)), ",", ".");
    WriteCue(out, i, start, end, captions.texts.At(i));
    RuntimeBackgroundTask();
  }
}

void Window1::DoSRT(std::int64_t row) { SaveCaptions(*this, row, ".srt", WriteSRT); }

void Window1::DoVTT(std::int64_t row) { SaveCaptions(*this, row, ".vtt", WriteVTT); }
