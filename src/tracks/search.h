// The Search command.
#pragma once

#include <string_view>

class Window1;

// Requests the caption tracks of the video in TextField1 and lists them in Listbox1: language name, language
// code. Shows a message if there are none. A search that is stopped leaves Listbox1 and XMLList empty.
void Search(Window1& form);

// Adds a row to Listbox1 and one to XMLList for each track of the reply; none if any part of the reply can't
// be cut. Leaves the reply, with its marks, in TextArea1. Requires: both lists are empty.
void TakeTrackList(Window1& form, std::string_view reply);
