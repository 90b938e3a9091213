// Accessibility of the windows beyond what Qt reports by itself: windows are frames or dialogs, headings name
// their groups, lists have no numbered rows, a button that can't be used is disabled. Only roles, names and
// relations are made here; the texts come from the records.
#pragma once

// In effect from now on; may be called again. Requires: a QApplication.
void installSpokenViews();
