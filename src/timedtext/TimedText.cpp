#include "timedtext/TimedText.h"

#include "app/App.h"
#include "app/Window1.h"
#include "http/HTTPSocket.h"
#include "runtime/Numbers.h"

namespace {

constexpr std::int64_t kTimedTextTimeOut = 30;  // seconds without progress
constexpr std::string_view kSeparator = " ||| ";

enum class Reach { First, Every };

struct Step {
  Reach reach;
  std::string_view find;
  std::string_view put;
};

// In this order. The first two are four characters each, with a backslash: no line end.
constexpr Step kSteps[] = {
    {Reach::Every, "/\\r/", ""},
    {Reach::Every, "/\\n/", ""},
    {Reach::First, "<transcript>", ""},
    {Reach::First, "</transcript>", ""},
    {Reach::Every, "<text start=\"", ""},
    {Reach::Every, "\" dur=\"", kSeparator},
    {Reach::Every, "\">", kSeparator},
    {Reach::Every, "</text>", kSeparator},
    {Reach::First, "<?xml version=\"1.0\" encoding=\"utf-8\" ?>", ""},
    {Reach::Every, "&amp;#39;", "'"},
    {Reach::Every, "&amp;quot;", "\""},
};

std::string AddressOf(const Window1& form, std::int64_t row) {
  const App& app = App::Get();
  return ReplaceAll("https://" + app.endpoints.TimedTextEndpoint + "/api/timedtext?&v=" + app.vidCode +
                        "&lang=" + form.Listbox1.Cell(row, 1),
                    " ", "");
}

}  // namespace

std::optional<TimedText> FetchTimedText(Window1& form, std::int64_t row) {
  TimedText track;
  track.trackTitle = Replace(form.Listbox1.Cell(row, 0), "\" lang_default=\"true", "");
  form.TextArea1.SetText("");
  HTTPSocket socket;
  std::string body = socket.Get(AddressOf(form, row), kTimedTextTimeOut);
  if (body.empty() && socket.LastErrorCode() != 0) {
    MsgBox(
        "Error code: " + Str(socket.ErrorCode()) +
        " - A connection to YouTube was not able to be established. Check your internet connection and try "
        "again.");
    return std::nullopt;
  }
  form.TextArea1.SetText(NormaliseTimedText(DefineEncoding(std::move(body), Encodings::UTF8)));
  track.fields = Split(form.TextArea1.Text(), kSeparator);
  return track;
}

std::string NormaliseTimedText(std::string document) {
  for (const Step& step : kSteps) {
    document = step.reach == Reach::Every ? ReplaceAll(std::move(document), step.find, step.put)
                                          : Replace(std::move(document), step.find, step.put);
  }
  return document;
}

// Starts stand at 0, 3, 6, ... and texts at 2, 5, 8, ..., each below the last field.
std::size_t TimedText::Starts() const { return (fields.size() - 1 + 2) / 3; }
std::size_t TimedText::Cues() const { return (fields.size() - 1) / 3; }

TimedTextCue TimedText::Times(std::size_t i) const { return {fields.at(3 * i), fields.at(3 * i + 1), ""}; }

std::string TimedText::Text(std::size_t i) const { return CleanCueText(fields.at(3 * i + 2)); }

std::string CleanCueText(std::string text) {
  text = ReplaceLineEndings(std::move(text), " ");
  text = ReplaceAll(std::move(text), ChrB(253) + ChrB(255), " ");
  text = ReplaceAll(std::move(text), "\n", " ");
  return ReplaceAll(std::move(text), "\r\n", " ");
}

double CueEndSeconds(const TimedTextCue& cue) { return Val(Str(Val(cue.start) + Val(cue.dur))); }
