// Foreign text made safe to show. Everything that a view draws and did not write itself passes through here,
// so that no language name, cue, term or file name can disguise itself or fill the screen. What the user
// types stays as it is.
#pragma once

#include <QString>
#include <string_view>

enum class Lines { One, Many };

// bytes as UTF-8, at most atMost characters, with "…" in place of the rest. U+FFFD replaces bytes that are
// not UTF-8, control characters and bidirectional overrides; other characters that only set the direction of
// text are left out. A line break, "\r", "\n" or "\r\n", becomes "\n", or with Lines::One a blank; a tab
// always becomes a blank. Takes time in proportion to atMost, not to the length of bytes.
QString shownText(std::string_view bytes, Lines lines = Lines::One, qsizetype atMost = 1000);

// The same text as rich text for a tool tip, so that no mark in it is taken for markup.
QString plainToolTip(const QString& shown);

// text with a zero-width space after every 80 characters without white space, at which a view may break it.
QString withBreaks(const QString& text);
