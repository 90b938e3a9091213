// Texts in their places, whatever the font: one that is a little too wide takes free space to its right, and
// then slightly smaller letters.
#pragma once

#include <QFont>
#include <functional>

class QWidget;
class Control;
struct Look;

// The font of the desktop as look wants it.
QFont fontOf(const Look& look);

// fontOf, or the largest in which the text fits, down to four fifths; a heading stays larger than the body.
// What doesn't fit then either gets slightly narrower letters.
QFont fittingFont(const Look& look, const std::function<bool(const QFont&)>& fits);

// What text takes of a line, with what rounding may add.
int neededWidth(const QFont& font, const QString& text);

// The width from control's left edge to what stands to its right, or to the edge of the window. In pixels.
int freeWidth(const Control& control);

// Gives widget a font that it doesn't have.
void takeFont(QWidget& widget, const QFont& font);
