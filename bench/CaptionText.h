// The file that a peer writes: one growing text, to which numbers are written directly.
#pragma once

#include <string>
#include <string_view>

#include "conversion.h"

class CaptionText {
 public:
  // expected: estimated length of the file.
  CaptionText(Form form, std::size_t expected);
  // Times are decimal seconds. text is copied, but line ends become blanks, and the two escapes of quotation
  // marks, which the parser has left as apostrophe and quotation, become plain.
  void AddCue(std::string_view start, std::string_view dur, std::string_view text,
              std::string_view apostrophe, std::string_view quotation, bool escapeAgain);
  std::string Take() { return std::move(text_); }

 private:
  void AddTimecode(double seconds, std::string_view point);
  void AddNumber(unsigned long long number, std::size_t digits);
  void AddWords(std::string_view words, std::string_view apostrophe, std::string_view quotation,
                bool escapeAgain);
  Form form_;
  std::string text_;
  unsigned long long number_ = 0;
};
