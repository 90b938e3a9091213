// From the points of the records to the screen: everything grows with the letters that the desktop gives.
#pragma once

#include <QRect>

class Control;
class Window;

// How much larger than in the records all is drawn: the height of the desktop's font against that of 10
// points at 96 dpi, and at least 1.
double scale();

// A length or place in pixels of the window; and back in points.
int scaled(int points);
int inPoints(int pixels);

// Where a control stands, by its edges, so that what touches in points touches on the screen; and from there
// with another width, in pixels. Where the desktop reads from right to left, the window is its mirror image.
QRect placeOf(const Control& control);
QRect placeOf(const Control& control, int width);

// A place on the window, in pixels from the side where reading begins, as it is on the screen.
QRect mirrored(const Window& window, const QRect& place);
