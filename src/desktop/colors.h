// The records' colours, made legible on whatever background the desktop has.
#pragma once

#include <QColor>

// The contrast ratio of two colours by the W3C's WCAG 2.1: 1 for equal colours, 21 for black on white.
double contrast(const QColor& one, const QColor& other);

// The least contrast of a text, and of a mark.
constexpr double kLegible = 4.5, kDiscernible = 3;

// color, made darker on a light background or lighter on a dark one, with its hue kept, until its contrast is
// at least `least`.
QColor legibleOn(const QColor& background, const QColor& color, double least = kLegible);

// The colour halfway from background to text, or as much nearer to text as a contrast of `least` needs.
QColor mutedOn(const QColor& background, const QColor& text, double least = kLegible);
