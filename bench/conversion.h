// The contenders that convert a timed-text document to the bytes of a file, in memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "timedtext/TimedText.h"

class Window1;

enum class Form { SRT, WebVTT, StampedLines, Lines, Paragraph };
inline constexpr Form kForms[] = {Form::SRT, Form::WebVTT, Form::StampedLines, Form::Lines, Form::Paragraph};
const char* NameOf(Form form);

std::string TranscriptOf(const TimedText& track, Form form);
// With the program's own functions, in the order in which its commands call them.
SharedText ConvertByUs(std::string document, Form form);

// With an XML parser and std::to_chars: the same bytes for a well-formed document, "" for one that can't be
// parsed.
std::string ConvertByPugixml(std::string document, Form form);
std::string ConvertByLibxml2(const std::string& document, Form form);

// The lower bound for any converter: finds each "<" and copies the document.
std::string CopyByMemchr(const std::string& document);

// The list of tracks as names and codes: by us, in Listbox1, and by pugixml.
struct Track {
  std::string name;
  std::string code;
  bool operator==(const Track&) const = default;
};
void ListTracksByUs(Window1& window, const std::string& document);
std::vector<Track> RowsOf(const Window1& window);
std::vector<Track> TracksByPugixml(const std::string& document);
