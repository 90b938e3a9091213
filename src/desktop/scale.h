// From the points of the records to the pixels of the screen: everything grows with the desktop's font.
#pragma once

#include <QRect>

class Control;
class Window;

// Pixels for a point: the height of the desktop's font against that of 10 points at 96 dpi, and at least 1.
double scale();

// A length or place in pixels of the window; and back in points.
int scaled(int points);
int inPoints(int pixels);

// The place of a control, or that place with another width in pixels. Its edges are scaled, not its size, so
// that controls that touch in points touch on the screen. Mirrored on a desktop that reads right to left.
QRect placeOf(const Control& control);
QRect placeOf(const Control& control, int width);

// Converts place from pixels counted from the side on which reading begins to pixels from the left.
QRect mirrored(const Window& window, const QRect& place);
