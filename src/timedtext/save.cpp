#include "timedtext/save.h"

#include "app/App.h"
#include "runtime/Platform.h"
#include "runtime/exceptions.h"

namespace {

bool ReportFailure(const FolderItem& file, int error) {
  ++App::Get().progress.failed;
  MsgBox("\"" + file.Name() + "\" could not be saved: " + ErrorWords(error) + ".");
  return false;
}

}  // namespace

bool SaveFile(const FolderItemPtr& file, const std::function<void(TextOutputStream&)>& write) {
  Application::Current().CheckEnded();  // the window may have closed during its dialog
  const auto stream = file->CreateTextFile();
  if (!stream) return ReportFailure(*file, file->LastErrorCode());
  try {
    write(*stream);
    stream->Close();
    App::Get().progress.CountSaved(file->Path());
    return true;
  } catch (const IOException& e) {
    return ReportFailure(*file, e.ErrorNumber());
  }
}

void CountCancelled() { ++App::Get().progress.cancelled; }
