// The roads from a timed-text document to the bytes of a file, all in memory.
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
// The product's own pieces in the order in which its commands call them.
SharedText ConvertByUs(std::string document, Form form);

// The same by an XML parser, and numbers through std::to_chars. They give the same bytes for a
// sound document. "" for one that can't be parsed.
std::string ConvertByPugixml(std::string document, Form form);
std::string ConvertByLibxml2(const std::string& document, Form form);

// What no converter can go below: one search for each "<", and a copy. The result is as long as
// the document.
std::string CopyByMemchr(const std::string& document);

// The list of tracks as rows of name and code, by us (in Listbox1) and by pugixml.
struct Track {
  std::string name;
  std::string code;
  bool operator==(const Track&) const = default;
};
void ListTracksByUs(Window1& window, const std::string& document);
std::vector<Track> RowsOf(const Window1& window);
std::vector<Track> TracksByPugixml(const std::string& document);
