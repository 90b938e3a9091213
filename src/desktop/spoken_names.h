// What a screen reader calls a control that has no words of its own.
#pragma once

#include <QString>

#include "runtime/Control.h"

// Labels and buttons are called by what stands on them.
bool hasOwnName(const Control& control);

// What the record says; else the text of the label that stands above the control, nearest to it
// and flush with its left edge; else its name.
QString spokenName(const Control& control);
