// The reply to the track list request, on its way into the list of the form.
#pragma once

#include <string>

class Window1;

// Adds a row to Listbox1 for each track of the reply, and one to XMLList; both lists must be empty.
// A reply that can't be cut as a whole leaves both empty. The marked-up reply stays in TextArea1.
void TakeTrackList(Window1& form, std::string reply);
