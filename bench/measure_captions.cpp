#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "Turns.h"
#include "gateway/documents/convert.h"
#include "measures.h"
#include "runtime/Text.h"
#include "samples.h"

namespace {

// A cue as the formats write it.
struct WrittenCue {
  std::string from, to;    // hours:minutes:seconds
  std::string start, dur;  // in seconds
  std::string at, length;  // in milliseconds
  std::string words;
};

struct Form {
  std::string_view ending, head;
  std::string (*cue)(const WrittenCue&);
  std::string_view foot;
};

const Form kForms[] = {
    {"srv1", "<transcript>",
     [](const WrittenCue& c) {
       return "<text start=\"" + c.start + "\" dur=\"" + c.dur + "\">" +
              ReplaceAll(c.words, "&", "&amp;amp;") + "</text>";
     },
     "</transcript>"},
    {"srv2", "<timedtext>",
     [](const WrittenCue& c) {
       return "<text t=\"" + c.at + "\" d=\"" + c.length + "\">" + ReplaceAll(c.words, "&", "&amp;") +
              "</text>";
     },
     "</timedtext>"},
    {"srv3", "<timedtext format=\"3\"><body>",
     [](const WrittenCue& c) {
       const std::string spoken = ReplaceAll(ReplaceAll(c.words, "&", "&amp;"), " ", "</s><s ac=\"0\"> ");
       return "<p t=\"" + c.at + "\" d=\"" + c.length + "\" w=\"1\"><s>" + spoken + "</s></p>\n";
     },
     "</body></timedtext>"},
    {"json3", "{\"events\":[{}",
     [](const WrittenCue& c) {
       const std::string quoted = ReplaceAll(ReplaceAll(c.words, "\"", "\\\""), "\n", "\\n");
       return ",{\"tStartMs\":" + c.at + ",\"dDurationMs\":" + c.length + ",\"segs\":[{\"utf8\":\"" + quoted +
              "\"}]}";
     },
     "]}"},
    {"ttml", "<tt><body><div>",
     [](const WrittenCue& c) {
       const std::string lines = ReplaceAll(ReplaceAll(c.words, "&", "&amp;"), "\n", "<br/>");
       return "<p begin=\"" + c.from + "\" end=\"" + c.to + "\" style=\"s2\">" + lines + "</p>\n";
     },
     "</div></body></tt>"},
    {"vtt", "WEBVTT\nKind: captions\nLanguage: en\n\n",
     [](const WrittenCue& c) {
       return c.from + " --> " + c.to + " align:start position:0%\n" + ReplaceAll(c.words, "&", "&amp;") +
              "\n\n";
     },
     ""},
    {"srt", "", [](const WrittenCue& c) { return "1\n" + c.from + " --> " + c.to + "\n" + c.words + "\n\n"; },
     ""},
};

std::string Padded(std::size_t number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string Clock(std::size_t milliseconds) {
  return Padded(milliseconds / 3'600'000, 2) + ":" + Padded(milliseconds / 60'000 % 60, 2) + ":" +
         Padded(milliseconds / 1000 % 60, 2) + "." + Padded(milliseconds % 1000, 3);
}

std::string Seconds(std::size_t milliseconds) {
  return std::to_string(milliseconds / 1000) + "." + Padded(milliseconds % 1000, 3);
}

std::string FileOf(const Form& form, const std::vector<std::string>& texts) {
  std::string file(form.head);
  std::size_t start = 0;
  for (const std::string& words : texts) {
    const std::size_t length = 1000 + words.size() * 10;
    file += form.cue({Clock(start), Clock(start + length), Seconds(start), Seconds(length),
                      std::to_string(start), std::to_string(length), words});
    start += length;
  }
  return file += form.foot;
}

}  // namespace

void MeasureCaptions(Effort effort, std::ostream& out, Table& table) {
  constexpr std::size_t kCues = 100'000;
  std::vector<std::string> texts = CueTextsOf(kCues);
  for (std::string& words : texts) words = ReplaceAll(std::move(words), "&amp;", "&");
  out << "\n## Caption files of 100,000 cues, read, cleaned and written\n\n"
      << TableRow({"format", "MB", "ms"}) << TableRow({"---", "---", "---"});
  std::string document;  // all formats must give the same
  for (const Form& form : kForms) {
    const auto* format = gateway::FormatWithEnding(form.ending);
    const std::string file = FileOf(form, texts);
    const auto convert = [&](std::string bytes) {
      return gateway::ToDocument(std::move(bytes), *format, {"en"}).document;
    };
    const std::string ours = convert(file);
    if (document.empty()) document = ours;
    if (ours != document || ours.empty())
      throw std::runtime_error("the caption files differ in " + std::string(form.ending));
    std::string copy;
    const auto times = Turns("captions/" + std::string(form.ending),
                             {{"us", [&] { Keep(convert(std::move(copy)).size()); }, [&] { copy = file; }}},
                             1, effort.brief ? 3 : 11);
    const double milliseconds = Median(times[0]) / 1e6;
    out << TableRow({std::string(form.ending), Rounded(static_cast<double>(file.size()) / 1e6, 1),
                     Rounded(milliseconds, 1)})
        << std::flush;
    if (form.ending == "vtt")
      table.push_back(
          {"a VTT of 100,000 cues to the document, ms", Measure::Bound::AtMost, 100, 50, milliseconds});
  }
}
