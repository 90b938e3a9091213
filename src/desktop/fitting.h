// Texts in their places, whatever the font: a text that is a little too wide takes free space to its right,
// and then a slightly smaller font.
#pragma once

#include <QFont>
#include <functional>

class QWidget;
class Control;
struct Look;

// The desktop's font in the size and style of look.
QFont fontOf(const Look& look);

// fontOf(look), or the largest smaller size in which the text fits, down to four fifths; a heading stays
// larger than the body. A text that doesn't fit even then gets slightly narrower letters.
QFont fittingFont(const Look& look, const std::function<bool(const QFont&)>& fits);

// The width of text in pixels, with a reserve for rounding.
int neededWidth(const QFont& font, const QString& text);

// The pixels from control's left edge to the next control on its right, or to the window's edge.
int freeWidth(const Control& control);

// Sets the font unless widget has it already.
void takeFont(QWidget& widget, const QFont& font);
