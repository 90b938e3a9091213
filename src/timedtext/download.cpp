// The Download command: checks the form, then runs the chosen writer for each selected track.

#include "app/App.h"
#include "app/Window1.h"
#include "runtime/Application.h"

namespace {

void ForEachSelectedRow(Window1& form, void (Window1::*write)(std::int64_t)) {
  for (std::int64_t row = 0; row < form.Listbox1.ListCount(); ++row) {
    if (form.Listbox1.Selected(row)) {
      Progress& progress = App::Get().progress;
      progress.item = form.Listbox1.Cell(row, 0);
      ++progress.place;
      (form.*write)(row);
    }
    RuntimeBackgroundTask();
  }
}

}  // namespace

void Window1::PushButton1_Action() {
  if (TextField1.Text().empty()) {
    MsgBox(
        "You must paste the URL of your YouTube movie into the first form field before you can download the "
        "transcripts.");
    Owner().CheckEnded();  // the form may have gone behind the message
    return TextField1.SetFocus();
  }
  if (Listbox1.ListCount() == 0) {
    return MsgBox(
        "There are no selected languages to retrieve. Did you click the Search button? If you did there may "
        "be no uploaded closed captions to retrieve.");
  }
  if (Listbox1.SelCount() == 0) return MsgBox("You must choose a language to continue.");
  if (!TextBox.Value() && !SRTBox.Value() && !WebVTTBox.Value()) {
    return MsgBox("You need to choose either SRT File, WebVTT File, or Text Transcript to download.");
  }
  if (TextBox.Value() && !paragraphBox.Value() && !lineBox.Value()) {
    return MsgBox("You must choose your transcript format either in Paragraph Form or Line-by-line.");
  }
  const int types = TextBox.Value() + SRTBox.Value() + WebVTTBox.Value();
  App::Get().progress.of = Listbox1.SelCount() * types;
  if (TextBox.Value()) ForEachSelectedRow(*this, &Window1::getTranscriptions);
  if (SRTBox.Value()) ForEachSelectedRow(*this, &Window1::DoSRT);
  if (WebVTTBox.Value()) ForEachSelectedRow(*this, &Window1::DoVTT);
}
