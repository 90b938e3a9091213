#include "timedtext/download.h"

#include <algorithm>

#include "app/App.h"
#include "app/output_types.h"
#include "timedtext/fetch.h"
#include "timedtext/formats.h"
#include "timedtext/save.h"

namespace {

bool IsChosen(const Window1& form, const OutputType& type) { return (form.*type.button).Value(); }

void DownloadSelected(Window1& form, Output output) {
  for (std::int64_t row = 0; row < form.Listbox1.ListCount(); ++row) {
    if (form.Listbox1.Selected(row)) {
      Progress& progress = App::Get().progress;
      progress.item = form.Listbox1.Cell(row, 0);
      ++progress.place;
      DownloadTrack(form, row, output);
    }
    RuntimeBackgroundTask();
  }
}

}  // namespace

void Download(Window1& form) {
  if (form.TextField1.Text().empty()) {
    MsgBox(
        "You must paste the URL of your YouTube movie into the first form field before you can download the transcripts.");
    App::Get().CheckEnded();  // the form may have closed during the message
    return form.TextField1.SetFocus();
  }
  if (form.Listbox1.ListCount() == 0) {
    return MsgBox(
        "There are no selected languages to retrieve. Did you click the Search button? If you did there may be no uploaded closed captions to retrieve.");
  }
  if (form.Listbox1.SelCount() == 0) return MsgBox("You must choose a language to continue.");
  const auto types = std::count_if(kOutputTypes.begin(), kOutputTypes.end(),
                                   [&](const OutputType& type) { return IsChosen(form, type); });
  if (types == 0) return MsgBox(kNoOutputType);
  if (form.TextBox.Value() && !form.paragraphBox.Value() && !form.lineBox.Value())
    return MsgBox("You must choose your transcript format either in Paragraph Form or Line-by-line.");
  App::Get().progress.of = form.Listbox1.SelCount() * types;
  for (const OutputType& type : kOutputTypes)
    if (IsChosen(form, type)) DownloadSelected(form, type.output);
}

void DownloadTrack(Window1& form, std::int64_t row, Output output) {
  const auto track = FetchTimedText(form, row);
  if (!track) return;
  const FileFormat& format = FormatOf(output);
  const std::string name = track->trackTitle + format.extension;
  const FileWriter write = format.Form(form, *track);
  const FolderItemPtr file = GetSaveFolderItem(format.fileType, name);
  if (!file) CountCancelled();
  if (file && SaveFile(file, write) && form.openBox.Value()) file->Launch(true);
  if (format.clearsDocument) form.TextArea1.SetText("");
}
