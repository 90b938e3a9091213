// Writes a file that the user has chosen, and counts it.
#pragma once

#include <functional>

#include "runtime/Streams.h"

// Creates the file, passes it to `write` and closes it; true if it is complete. On failure shows a message
// with the file's name and the reason, and leaves an earlier file as it was. Counts success and failure in
// the progress of the command. Throws HandlerEnded if the window closed during the save dialog.
bool SaveFile(const FolderItemPtr& file, const std::function<void(TextOutputStream&)>& write);
// Counts a save dialog that the user cancelled.
void CountCancelled();
