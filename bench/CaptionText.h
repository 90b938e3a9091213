// The file that a peer writes: one growing text, numbers straight into it.
#pragma once

#include <string>
#include <string_view>

#include "conversion.h"

class CaptionText {
 public:
  // expected is a guess at the length of the file.
  CaptionText(Form form, std::size_t expected);
  // Times are decimal seconds. text is put in as it stands but for line ends, which become blanks,
  // and the two escapes of quotation marks, whose text is given: the parser may have read them.
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
