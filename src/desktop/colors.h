// Told colours on a background that was not foreseen for them.
#pragma once

#include <QColor>
#include <QPalette>

// Contrast of two colours after the W3C's WCAG 2.1: 1 for the same, 21 for black on white.
double contrast(const QColor& one, const QColor& other);

// The told colour as it stands on a light background; on a dark one made lighter, with its hue
// kept, until its contrast is at least 4.5.
QColor legibleOn(const QColor& background, const QColor& told);

bool isDark(const QColor& background);
