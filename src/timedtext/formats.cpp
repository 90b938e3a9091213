#include "timedtext/formats.h"

#include "app/output_types.h"
#include "runtime/Application.h"
#include "runtime/Text.h"
#include "timedtext/transcript.h"

namespace {

constexpr std::string_view LF = EndOfLine.UNIX;

// Of SRT and WebVTT; eol is the stream's own line end.
//
//   cue = number LF start " --> " end LF text LF eol
void WriteCue(TextOutputStream& out, std::size_t i, const ListedTimecode& start, const ListedTimecode& end,
              const CueText& text) {
  out.WritePieces(static_cast<std::int64_t>(i) + 1, LF, start, " --> ", end, LF, text, LF, EndOfLine);
}

template <void (*write)(TextOutputStream&, const Captions&)>
FileWriter CaptionsWriter(Window1&, const TimedText& track) {
  return [captions = FormCaptions(track)](TextOutputStream& out) { write(out, captions); };
}

// Reads the option boxes for each cue: the form stays usable, and a change takes effect at the next cue.
FileWriter TranscriptWriter(Window1& form, const TimedText& track) {
  form.TextArea1.SetText(Transcript(track, [&form]() -> TranscriptForm {
    return {form.lineBox.Value(), form.timecodeBox.Value()};
  }));
  return [&form](TextOutputStream& out) { out.Write(form.TextArea1.Text()); };
}

constexpr FileFormat kFormats[] = {
    {Output::Text, ".txt", "text/plain", TranscriptWriter, true},
    {Output::SRT, ".srt", "", CaptionsWriter<WriteSRT>, false},
    {Output::VTT, ".vtt", "", CaptionsWriter<WriteVTT>, false},
};
static_assert(IsInOrderOfOutput(kFormats));

}  // namespace

const FileFormat& FormatOf(Output output) { return kFormats[static_cast<std::size_t>(output)]; }

Captions FormCaptions(TimedText track) {
  TimecodeList starts, ends;
  starts.Reserve(track.Starts());
  ends.Reserve(track.Starts());
  for (std::size_t i = 0; i < track.Starts(); ++i) {
    ends.AppendEnd(track.Times(i));
    starts.AppendStart(track.Times(i));
    RuntimeBackgroundTask();
  }
  return {std::move(starts), std::move(ends), std::move(track)};
}

void WriteSRT(TextOutputStream& out, const Captions& captions) {
  for (std::size_t i = 0; i < captions.Count(); ++i) {
    WriteCue(out, i, captions.starts.At(i), captions.ends.At(i), captions.track.Text(i));
    RuntimeBackgroundTask();
  }
}

// SRT with a header, and with points in its timecodes:
//
//   file = "WEBVTT" LF eol *cue
void WriteVTT(TextOutputStream& out, const Captions& captions) {
  out.WriteLine("WEBVTT" + std::string(LF));
  for (std::size_t i = 0; i < captions.Count(); ++i) {
    WriteCue(out, i, captions.starts.WithPointAt(i), captions.ends.WithPointAt(i), captions.track.Text(i));
    RuntimeBackgroundTask();
  }
}
