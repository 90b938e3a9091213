// The records' colours on a background that was not foreseen for them.
#pragma once

#include <QColor>
#include <QPalette>

// Contrast of two colours after the W3C's WCAG 2.1: 1 for the same, 21 for black on white.
double contrast(const QColor& one, const QColor& other);

// What a text and what a mark must have.
constexpr double kLegible = 4.5, kDiscernible = 3;

// color, made darker on a light background or lighter on a dark one, with its hue kept, until its contrast is
// at least this.
QColor legibleOn(const QColor& background, const QColor& color, double least = kLegible);

// Halfway from the background to the text, or as much nearer to the text as that contrast takes.
QColor mutedOn(const QColor& background, const QColor& text, double least = kLegible);

bool isDark(const QColor& background);
