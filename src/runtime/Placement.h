// How a control is placed in its window and looks there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

class Control;

enum class Align { Left, Center };

// For the view alone: set at construction and never changed.
struct Look {
  int fontSize = 0;  // points; 0 is the system's own size
  bool italic = false;
  std::optional<std::uint32_t> color = std::nullopt;  // 0xRRGGBB; nullopt is the system's own
  Align align = Align::Left;
  bool selectable = false;  // a label whose text can be selected
  bool multiline = false;   // a label of several lines
  // Return presses it: from the text field before it in the tab order and, for the first one of a window,
  // from anywhere else.
  bool defaultButton = false;
  bool startsCommand = false;    // a button that is disabled while a command runs
  std::string placeholder = {};  // shown in an empty text field
  std::string spoken = {};       // name for screen readers, for a control without caption and label
};

// One row of a window's table: the control's place, in points from the window's upper left corner, and its
// initial caption or text.
struct Placement {
  Control& control;
  const char* name;
  int left, top, width, height;
  int tab = -1;  // index in the tab order; -1 for none
  std::string text = {};
  Look look = {};
};
