#include "timedtext/transcript.h"

#include "app/FileTypes1.h"
#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Text.h"
#include "timedtext/TimedText.h"
#include "timedtext/save.h"
#include "timedtext/timecode.h"

namespace {

// The timecode is formed where it is asked for.
void AppendCue(Window1& form, std::string_view start, const CueText& text) {
  const bool byLines = form.lineBox.Value();
  if (byLines && form.timecodeBox.Value()) form.TextArea1.AppendText("[", StartTimecode(start), "]\t");
  form.TextArea1.AppendText(text, byLines ? std::string_view(EndOfLine) : " ");
}

}  // namespace

void FormTranscript(Window1& form, const TimedText& track) {
  form.TextArea1.SetText("");
  form.TextArea1.Reserve(track.Size());
  for (std::size_t i = 0; i < track.Cues(); ++i) {
    AppendCue(form, track.Times(i).start, track.Text(i));
    RuntimeBackgroundTask();
  }
}

void Window1::getTranscriptions(std::int64_t row) {
  auto track = FetchTimedText(*this, row);
  if (!track) return;
  const std::string name = track->trackTitle + ".txt";
  FormTranscript(*this, *track);
  const FolderItemPtr file = GetSaveFolderItem(FileTypes1::Text(), name);
  if (!file) CountCancelled();
  const bool saved = file && SaveFile(file, [this](TextOutputStream& out) { out.Write(TextArea1.Text()); });
  if (saved && openBox.Value()) file->Launch(true);
  TextArea1.SetText("");
}
