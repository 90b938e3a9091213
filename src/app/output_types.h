// The kinds of file that Download writes, in the order in which it writes them. To add one: a row
// here and its caption in kNoOutputType, its name and its control in Window1, and a row with its writer in
// timedtext/formats.cpp.
#pragma once

#include <array>

#include "app/Window1.h"

struct OutputType {
  Output output;
  RadioButton Window1::*button;
  const char* option;   // App::checkedDL while the button is on
  const char* caption;  // of the Download button, from then on
};

inline constexpr auto kOutputTypes = std::to_array<OutputType>({
    {Output::Text, &Window1::TextBox, "Text", "Download Text Transcript(s)"},
    {Output::SRT, &Window1::SRTBox, "SRT", "Download SRT File(s)"},
    {Output::VTT, &Window1::WebVTTBox, "VTT", "Download Text Transcript(s)"},
});

// Download shows this if no type is chosen. It names them all.
inline constexpr char kNoOutputType[] =
    "You need to choose either SRT File, WebVTT File, or Text Transcript to download.";

// Whether a table has one row for each type, in the order of Output, which is its index.
constexpr bool IsInOrderOfOutput(const auto& rows) {
  std::size_t index = 0;
  for (const auto& row : rows)
    if (static_cast<std::size_t>(row.output) != index++) return false;
  return index == kOutputTypes.size();
}
static_assert(IsInOrderOfOutput(kOutputTypes));
