#include "timedtext/transcript.h"

#include "app/FileTypes1.h"
#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Text.h"
#include "timedtext/TimedText.h"
#include "timedtext/save.h"
#include "timedtext/timecode.h"

namespace {

void AppendCue(Window1& form, std::string_view timecode, std::string_view text) {
  TextArea& transcript = form.TextArea1;
  const bool byLines = form.lineBox.Value();
  if (byLines && form.timecodeBox.Value()) {
    transcript.AppendText("[");
    transcript.AppendText(timecode);
    transcript.AppendText("]\t");
  }
  transcript.AppendText(text);
  transcript.AppendText(byLines ? std::string_view(EndOfLine) : " ");
}

}  // namespace

void FormTranscript(Window1& form, const TimedText& track) {
  TextList timecodes, cueTexts;
  for (std::size_t i = 0; i < track.Starts(); ++i) {
    timecodes.Append(StartTimecode(track.Times(i).start));
    RuntimeBackgroundTask();
  }
  for (std::size_t i = 0; i < track.Cues(); ++i) {
    track.AppendText(i, cueTexts);
    RuntimeBackgroundTask();
  }
  form.TextArea1.SetText("");
  for (std::size_t i = 0; i < cueTexts.Count(); ++i) {
    AppendCue(form, timecodes.At(i), cueTexts.At(i));
    RuntimeBackgroundTask();
  }
}

void Window1::getTranscriptions(std::int64_t row) {
  const auto track = FetchTimedText(*this, row);
  if (!track) return;
  FormTranscript(*this, *track);
  const FolderItemPtr file = GetSaveFolderItem(FileTypes1::Text(), track->trackTitle + ".txt");
  const bool saved = file && SaveFile(file, [this](TextOutputStream& out) { out.Write(TextArea1.Text()); });
  if (saved && openBox.Value()) file->Launch(true);
  TextArea1.SetText("");
}
