// What a screen reader is given of the windows where Qt's own way says too little: windows are frames or
// dialogs, headings hold their groups together, lists have no numbered rows, a button that can't be used is
// disabled. Roles, names and relations only; what they are about stands in the records.
#pragma once

// From now on; may be called again. Requires: a QApplication.
void speakViews();
