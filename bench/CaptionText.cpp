#include "CaptionText.h"

#include <array>
#include <charconv>

namespace {

// The bytes that are replaced; "<" and ">" only if they are escaped again.
constexpr std::array<bool, 256> StopsAt(std::string_view bytes) {
  std::array<bool, 256> stops{};
  for (const char c : bytes) stops[static_cast<unsigned char>(c)] = true;
  return stops;
}
constexpr auto kStops = StopsAt("&\r\n");
constexpr auto kStopsEscaped = StopsAt("&\r\n<>");

std::size_t PlainLength(std::string_view words, const std::array<bool, 256>& stops) {
  std::size_t length = 0;
  while (length < words.size() && !stops[static_cast<unsigned char>(words[length])]) ++length;
  return length;
}

double Number(std::string_view text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return value;
}

}  // namespace

CaptionText::CaptionText(Form form, std::size_t expected) : form_(form) {
  text_.reserve(expected);
  if (form == Form::WebVTT) text_ = "WEBVTT\n\n";
}

void CaptionText::AddNumber(unsigned long long number, std::size_t digits) {
  char text[24];
  const auto length = static_cast<std::size_t>(std::to_chars(text, text + sizeof text, number).ptr - text);
  if (length < digits) text_.append(digits - length, '0');
  text_.append(text, length);
}

void CaptionText::AddTimecode(double seconds, std::string_view point) {
  auto minutes = static_cast<unsigned long long>(seconds / 60.0);
  char text[32];
  const double rest = seconds - static_cast<double>(minutes) * 60.0;
  const auto end = std::to_chars(text, text + sizeof text, rest, std::chars_format::fixed, 2).ptr;
  std::string_view secs(text, static_cast<std::size_t>(end - text));
  if (secs == "60.00") secs = "0.00", ++minutes;
  AddNumber(minutes / 60, 2);
  text_ += ':';
  AddNumber(minutes % 60, 2);
  text_ += secs.size() < 5 ? ":0" : ":";
  text_.append(secs.substr(0, secs.size() - 3)).append(point).append(secs.substr(secs.size() - 2));
}

void CaptionText::AddWords(std::string_view words, std::string_view apostrophe, std::string_view quotation,
                           bool escapeAgain) {
  while (!words.empty()) {
    const std::size_t at = PlainLength(words, escapeAgain ? kStopsEscaped : kStops);
    text_.append(words.substr(0, at));
    words.remove_prefix(at);
    if (words.empty()) return;
    std::size_t taken = 1;
    if (words.starts_with(apostrophe)) {
      text_ += '\'', taken = apostrophe.size();
    } else if (words.starts_with(quotation)) {
      text_ += '"', taken = quotation.size();
    } else if (words[0] == '\n' || words[0] == '\r') {
      text_ += ' ', taken = words.starts_with("\r\n") ? 2 : 1;
    } else if (!escapeAgain) {
      text_ += words[0];
    } else {
      text_ += words[0] == '&' ? "&amp;" : words[0] == '<' ? "&lt;" : "&gt;";
    }
    words.remove_prefix(taken);
  }
}

void CaptionText::AddCue(std::string_view start, std::string_view dur, std::string_view text,
                         std::string_view apostrophe, std::string_view quotation, bool escapeAgain) {
  if (form_ == Form::SRT || form_ == Form::WebVTT) {
    const std::string_view point = form_ == Form::SRT ? "," : ".";
    AddNumber(++number_, 1);
    text_ += '\n';
    AddTimecode(Number(start), point);
    text_ += "0 --> ";
    AddTimecode(Number(start) + Number(dur), point);
    text_ += "0\n";
  } else if (form_ == Form::StampedLines) {
    text_ += '[';
    AddTimecode(Number(start), ".");
    text_ += "]\t";
  }
  AddWords(text, apostrophe, quotation, escapeAgain);
  text_ += form_ == Form::Paragraph ? " " : form_ == Form::SRT || form_ == Form::WebVTT ? "\n\n" : "\n";
}
