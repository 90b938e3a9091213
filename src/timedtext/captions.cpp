#include "timedtext/captions.h"

#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Text.h"
#include "timedtext/save.h"

namespace {

constexpr std::string_view LF = EndOfLine.UNIX;

void WriteCue(TextOutputStream& out, std::size_t i, const ListedTimecode& start, const ListedTimecode& end,
              const CueText& text) {
  out.WritePieces(static_cast<std::int64_t>(i) + 1, LF, start, " --> ", end, LF, text, LF, EndOfLine);
}

// One track, from the request to the opened file; the two formats differ in their last piece.
void SaveCaptions(Window1& form, std::int64_t row, const char* extension,
                  void (*write)(TextOutputStream&, const Captions&)) {
  auto track = FetchTimedText(form, row);
  if (!track) return;
  const std::string name = track->trackTitle + extension;
  const Captions captions = FormCaptions(std::move(*track));
  const FolderItemPtr file = GetSaveFolderItem("", name);
  if (!file) return CountCancelled();
  const bool saved = SaveFile(file, [&](TextOutputStream& out) { write(out, captions); });
  if (saved && form.openBox.Value()) file->Launch(true);
}

}  // namespace

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

void WriteVTT(TextOutputStream& out, const Captions& captions) {
  out.WriteLine("WEBVTT" + std::string(LF));
  for (std::size_t i = 0; i < captions.Count(); ++i) {
    WriteCue(out, i, captions.starts.WithPointAt(i), captions.ends.WithPointAt(i), captions.track.Text(i));
    RuntimeBackgroundTask();
  }
}

void Window1::DoSRT(std::int64_t row) { SaveCaptions(*this, row, ".srt", WriteSRT); }

void Window1::DoVTT(std::int64_t row) { SaveCaptions(*this, row, ".vtt", WriteVTT); }
