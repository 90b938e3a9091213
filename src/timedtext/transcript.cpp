#include "timedtext/transcript.h"

#include "runtime/Application.h"
#include "runtime/Text.h"
#include "timedtext/TimedText.h"
#include "timedtext/timecode.h"

std::string Transcript(const TimedText& track, const std::function<TranscriptForm()>& form) {
  std::string transcript;
  transcript.reserve(track.Size());
  for (std::size_t i = 0; i < track.Cues(); ++i) {
    const auto [byLines, withTimecodes] = form();
    if (byLines && withTimecodes) AppendPieces(transcript, "[", StartTimecode(track.Times(i).start), "]\t");
    AppendPieces(transcript, track.Text(i), byLines ? std::string_view(EndOfLine) : " ");
    RuntimeBackgroundTask();
  }
  return transcript;
}
