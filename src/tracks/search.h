// The Search command.
#pragma once

#include <string>

class Window1;

// Asks for the caption tracks of the video in TextField1 and lists them in Listbox1: language name, language
// code. Shows a message where there are none. A search that is stopped leaves both its lists empty.
void Search(Window1& form);

// Adds a row to Listbox1 for each track of the reply, and one to XMLList; both lists must be empty.
// A reply that can't be cut as a whole leaves both empty. The marked-up reply stays in TextArea1.
void TakeTrackList(Window1& form, std::string reply);
