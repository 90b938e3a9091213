// The kinds of file that Download writes, in the order in which it writes them. To add one: a row here, its
// control and its name in Window1, and a row with its writer in timedtext/.
#pragma once

#include <array>

#include "app/Window1.h"

struct OutputType {
  Output output;
  RadioButton Window1::*button;
  const char* option;   // App::checkedDL while the button is on
  const char* caption;  // of the Download button, from then on
};

inline constexpr std::array<OutputType, 3> kOutputTypes{{
    {Output::Text, &Window1::TextBox, "Text", "Download Text Transcript(s)"},
    {Output::SRT, &Window1::SRTBox, "SRT", "Download SRT File(s)"},
    {Output::VTT, &Window1::WebVTTBox, "VTT", "Download Text Transcript(s)"},
}};
