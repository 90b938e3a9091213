// What all savers of files share.
#pragma once

#include <functional>

#include "runtime/Streams.h"

// Creates file, lets write fill it and closes it; true if it stands. A failure is told to the person
// with the file's name and the reason, and what stood there before is untouched. Called right behind
// the save dialog, it also ends a command whose window went meanwhile.
//
// A file that stands, a failure, and a dialog that was cancelled count in the progress of the command.
bool SaveFile(const FolderItemPtr& file, const std::function<void(TextOutputStream&)>& write);
void CountCancelled();
