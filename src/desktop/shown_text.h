// Foreign text made fit to be seen. Everything that a view draws and did not write itself goes
// through here, so that no language name, cue, term or file name can disguise itself or grow
// into the screen. What a person types is not touched.
#pragma once

#include <QString>
#include <string_view>

enum class Lines { One, Many };

// bytes as UTF-8, at most so many characters, "…" in place of the rest. U+FFFD stands for bytes
// that are no UTF-8, for control characters and for bidirectional overrides; other characters
// that only turn text are left out. A line break, "\r", "\n" or "\r\n", is "\n", or with
// Lines::One a blank, as a tab always is. The effort is bound by atMost, not by bytes.
QString shownText(std::string_view bytes, Lines lines = Lines::One, qsizetype atMost = 1000);

// The same text as a tool tip that no view takes for rich text of its own.
QString plainToolTip(const QString& shown);

// text with a place to break in every run of more than 80 characters without one.
QString withBreaks(const QString& text);
