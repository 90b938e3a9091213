// From the points of the records to the screen: everything grows with the letters that the desktop gives.
#pragma once

#include <QRect>

class Control;

// How much larger than in the records all is drawn: the height of the desktop's font against that of 10
// points at 96 dpi, and at least 1.
double scale();

// A length or place in pixels of the window; and back in points.
int scaled(int points);
int inPoints(int pixels);

// Where a control stands, by its edges, so that what touches in points touches on the screen.
QRect placeOf(const Control& control);
