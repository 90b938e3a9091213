#include "timedtext/save.h"

#include "app/App.h"
#include "runtime/Platform.h"
#include "runtime/exceptions.h"

namespace {

bool TellFailure(const FolderItem& file, int error) {
  ++App::Get().progress.failed;
  MsgBox("\"" + file.Name() + "\" could not be saved: " + ErrorWords(error) + ".");
  return false;
}

}  // namespace

bool SaveFile(const FolderItemPtr& file, const std::function<void(TextOutputStream&)>& write) {
  Application::Current().CheckEnded();  // the window may have gone while its dialog was open
  const auto stream = file->CreateTextFile();
  if (!stream) return TellFailure(*file, file->LastErrorCode());
  try {
    write(*stream);
    stream->Close();
    App::Get().progress.CountSaved(file->Path());
    return true;
  } catch (const IOException& e) {
    return TellFailure(*file, e.ErrorNumber());
  }
}

void CountCancelled() { ++App::Get().progress.cancelled; }
