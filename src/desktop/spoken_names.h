// What a screen reader calls a control that has no words of its own.
#pragma once

#include <QString>

#include "runtime/TextControls.h"

// Labels and buttons are called by what stands on them.
bool hasOwnName(const Control& control);

// The label that stands above control, nearest to it and flush with its left edge; nullptr for none.
const Label* labelOf(const Control& control);

// What the record says; else the text of its label; else its name.
QString spokenName(const Control& control);
