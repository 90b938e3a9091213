// A caption document of any bytes, through all writers and the word search; the first line of an input is the
// term. Every format has its lines and the same number of cues; a well-formed document gives valid SRT and
// WebVTT with its words and times.

#include <cmath>
#include <cstdlib>
#include <optional>

#include "runtime/Text.h"
#include "support/Harness.h"
#include "wordsearch/SearchWin.h"

namespace {

using StringArray = std::vector<std::string>;

struct Cue {
  double start = 0;
  double dur = 0;
  std::string text;
};

// Reads a well-formed document; nullopt for any other, and for words that contain a text at which
// documents are split.
class WellFormedDocument {
 public:
  static std::optional<std::vector<Cue>> Read(std::string_view document) {
    WellFormedDocument reader{document};
    std::vector<Cue> cues;
    if (!reader.Take("<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript>")) return std::nullopt;
    while (reader.Take("<text start=\"")) {
      Cue cue;
      if (!reader.Number(cue.start) || !reader.Take("\" dur=\"") || !reader.Number(cue.dur) ||
          !reader.Take("\">") || !reader.Words(cue.text)) {
        return std::nullopt;
      }
      cues.push_back(cue);
    }
    if (!reader.Take("</transcript>") || !reader.left_.empty()) return std::nullopt;
    return cues;
  }

 private:
  explicit WellFormedDocument(std::string_view text) : left_(text) {}

  bool Take(std::string_view text) {
    if (!left_.starts_with(text)) return false;
    left_.remove_prefix(text.size());
    return true;
  }
  bool Number(double& value) {
    const std::size_t end = std::min(left_.find_first_not_of("0123456789."), left_.size());
    const std::string text(left_.substr(0, end));
    const std::size_t point = std::min(text.find('.'), text.size());
    if (point == 0 || point > 6 || text.size() - point > 4 || text.find('.', point + 1) < text.size())
      return false;
    value = std::atof(text.c_str());
    left_.remove_prefix(end);
    return true;
  }
  bool Words(std::string& text) {
    const std::size_t end = left_.find("</text>");
    if (end == std::string_view::npos) return false;
    const std::string words(left_.substr(0, end));
    left_.remove_prefix(end + 7);
    for (const char* cutting : {"<", "\">", "|", "/\\", "\" dur=\"", "\xFD\xFF"}) {
      if (words.find(cutting) != std::string::npos) return false;
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words.compare(i, 9, "&amp;#39;") == 0) {
        text += '\'', i += 8;
      } else if (words.compare(i, 10, "&amp;quot;") == 0) {
        text += '"', i += 9;
      } else if (words[i] == '\r' || words[i] == '\n') {
        i += words.compare(i, 2, "\r\n") == 0 ? 1 : 0;
        text += ' ';
      } else {
        text += words[i];
      }
    }
    return true;
  }

  std::string_view left_;
};

// Seconds of "HH:MM:SS", "," or "." and three digits, as both formats require; -1 for anything else.
double SecondsOf(const std::string& stamp, char point) {
  const std::size_t hours = stamp.find(':');
  if (hours == std::string::npos || hours < 2 || stamp.size() != hours + 10) return -1;
  for (std::size_t i = 0; i < stamp.size(); ++i) {
    const bool isColon = i == hours || i == hours + 3;
    const char wanted = isColon ? ':' : i == hours + 6 ? point : '0';
    if (wanted == '0' ? (stamp[i] < '0' || stamp[i] > '9') : stamp[i] != wanted) return -1;
  }
  const double minutes = std::atof(stamp.substr(hours + 1, 2).c_str());
  const double whole = std::atof(stamp.substr(hours + 4, 2).c_str());
  if (minutes >= 60 || whole >= 60) return -1;
  return std::atof(stamp.substr(0, hours).c_str()) * 3600 + minutes * 60 + whole +
         std::atof(stamp.substr(hours + 7).c_str()) / 1000;
}

// Cues of four lines, numbered from 1. Gives their texts.
StringArray TextsOfCues(const StringArray& lines, char point, const std::optional<std::vector<Cue>>& cues) {
  HOLDS(lines.size() % 4 == 0);
  StringArray texts;
  for (std::size_t i = 0; i * 4 < lines.size(); ++i) {
    HOLDS(lines[i * 4] == std::to_string(i + 1));
    const std::string& times = lines[i * 4 + 1];
    const std::size_t arrow = times.find(" --> ");
    HOLDS(arrow != std::string::npos);
    HOLDS(lines[i * 4 + 3].empty());
    texts.push_back(lines[i * 4 + 2]);
    HOLDS(texts.back().find('\r') == std::string::npos);
    if (!cues) continue;
    const double start = SecondsOf(times.substr(0, arrow), point);
    const double end = SecondsOf(times.substr(arrow + 5), point);
    HOLDS(i < cues->size());
    HOLDS(std::fabs(start - (*cues)[i].start) < 0.00501);
    HOLDS(std::fabs(end - (*cues)[i].start - (*cues)[i].dur) < 0.00501);
    HOLDS(start <= end);
    HOLDS(texts.back() == (*cues)[i].text);
  }
  HOLDS(!cues || texts.size() == cues->size());
  return texts;
}

std::string Save(fuzz::Program& program, const std::function<void(Window1&)>& choose) {
  choose(program.form);
  const std::string path = fuzz::Folder() / "out";
  program.host.saves = {path};
  HOLDS(program.form.PushButton1.UserClicks());
  HOLDS(program.TakeMessages().empty());
  return ReadFile(path);
}

bool IsPlain(const std::string& term) {
  for (const char c : term) {
    if (!(c >= 'a' && c <= 'z') && !(c >= 'A' && c <= 'Z') && c != ' ') return false;
  }
  return !term.empty();
}

void CheckSearch(fuzz::Program& program, const std::string& term, const StringArray& texts) {
  program.form.searchField.UserTypes(term);
  HOLDS(program.form.PushButton3.UserClicks());
  const StringArray messages = program.TakeMessages();
  const auto* window = static_cast<const SearchWin*>(program.app.FindWindow(SearchWin::kName));
  HOLDS(messages.size() == (window ? 0U : 1U));
  std::int64_t rows = window ? window->resultsList.ListCount() : 0;
  HOLDS(!window || program.app.searchCount == std::to_string(rows));
  std::size_t at = 0;
  for (std::int64_t row = 0; row < rows; ++row) {
    while (at < texts.size() && texts[at] != window->resultsList.Cell(row, 1)) ++at;
    HOLDS(at++ < texts.size());
  }
  if (!IsPlain(term)) return;
  std::int64_t expected = 0;
  for (const std::string& text : texts) {
    if (!fuzz::IsValidUTF8(text)) return;
    // Case folding maps the Kelvin sign and the long s to ASCII.
    if (text.find("\xE2\x84\xAA") != std::string::npos || text.find("\xC5\xBF") != std::string::npos) return;
    expected += Lowercase(text).find(Lowercase(term)) != std::string::npos;
  }
  HOLDS(rows == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string term = input.Line();
  const std::string document = input.Rest();
  const auto cues = WellFormedDocument::Read(document);
  fuzz::Program program;
  wire::Reset([&](const std::string&) { return wire::Reply{wire::Page(document)}; });
  program.form.TextField1.UserTypes("x");
  program.GiveTrack("English", "en");
  program.form.openBox.SetValue(false);

  const std::string srt = Save(program, [](Window1& form) { form.SRTBox.SetValue(true); });
  const StringArray texts = TextsOfCues(fuzz::Lines(srt), ',', cues);
  HOLDS(srt.empty() || srt.ends_with("\n\n"));
  const std::string vtt = Save(program, [](Window1& form) { form.WebVTTBox.SetValue(true); });
  HOLDS(vtt.starts_with("WEBVTT\n\n"));
  HOLDS(TextsOfCues(fuzz::Lines(vtt.substr(8)), '.', cues) == texts);
  program.form.WebVTTBox.SetValue(false);

  const std::string lines = Save(program, [](Window1& form) {
    form.TextBox.SetValue(true);
    form.lineBox.SetValue(true);
  });
  HOLDS(fuzz::Lines(lines) == texts);
  const std::string stamped = Save(program, [](Window1& form) { form.timecodeBox.SetValue(true); });
  const StringArray stampedLines = fuzz::Lines(stamped);
  HOLDS(stampedLines.size() == texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    HOLDS(stampedLines[i].starts_with("[") && stampedLines[i].find("]\t") != std::string::npos);
    HOLDS(stampedLines[i].substr(stampedLines[i].find("]\t") + 2) == texts[i]);
  }
  const std::string paragraph = Save(program, [](Window1& form) { form.paragraphBox.SetValue(true); });
  std::string expected;
  for (const std::string& text : texts) expected += text + " ";
  HOLDS(paragraph == expected);
  CheckSearch(program, term, texts);
  return 0;
}
