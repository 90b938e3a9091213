// The names under which a screen reader announces controls that have no caption.
#pragma once

#include <QString>

#include "runtime/TextControls.h"

// Labels and buttons are announced by their own text.
bool hasOwnName(const Control& control);

// The nearest label above control that is flush with its left edge; nullptr for none.
const Label* labelOf(const Control& control);

// The record's own spoken name; else the text of its label; else its name in the program.
QString spokenName(const Control& control);
