// The text transcript: a paragraph, or lines with or without timecodes.

#include "app/FileTypes1.h"
#include "app/Window1.h"
#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "timedtext/TimedText.h"
#include "timedtext/save.h"

namespace {

// The boxes are read for each cue, so a change during the run takes effect at the next one.
std::string CueBytes(const Window1& form, const std::string& timecode, const std::string& text) {
  if (!form.lineBox.Value()) return text + " ";
  const std::string stamp = form.timecodeBox.Value() ? "[" + timecode + "]" + Chr(9) : "";
  return stamp + text + std::string(EndOfLine);
}

}  // namespace

void Window1::getTranscriptions(std::int64_t row) {
  const auto track = FetchTimedText(*this, row);
  if (!track) return;
  StringArray timecodes, cueTexts;
  for (std::size_t i = 0; i < track->Starts(); ++i) {
    Append(timecodes, SecsToTimecode(Val(track->Times(i).start)));
    RuntimeBackgroundTask();
  }
  for (std::size_t i = 0; i < track->Cues(); ++i) {
    Append(cueTexts, track->Text(i));
    RuntimeBackgroundTask();
  }
  TextArea1.SetText("");
  for (std::size_t i = 0; i < cueTexts.size(); ++i) {
    TextArea1.AppendText(CueBytes(*this, timecodes.at(i), cueTexts[i]));
    RuntimeBackgroundTask();
  }
  const FolderItemPtr file = GetSaveFolderItem(FileTypes1::Text(), track->trackTitle + ".txt");
  const bool saved = file && SaveFile(file, [this](TextOutputStream& out) { out.Write(TextArea1.Text()); });
  if (saved && openBox.Value()) file->Launch(true);
  TextArea1.SetText("");
}
