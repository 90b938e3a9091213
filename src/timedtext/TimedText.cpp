#include "timedtext/TimedText.h"

#include "app/App.h"
#include "app/Window1.h"
#include "app/cause.h"
#include "http/HTTPSocket.h"
#include "runtime/Numbers.h"
#include "runtime/byte_search.h"

namespace {

constexpr std::int64_t kTimedTextTimeOut = 30;  // seconds without progress

std::string AddressOf(const Window1& form, std::int64_t row) {
  const App& app = App::Get();
  return ReplaceAll("https://" + app.endpoints.TimedTextEndpoint + "/api/timedtext?&v=" + app.vidCode +
                        "&lang=" + form.Listbox1.Cell(row, 1),
                    " ", "");
}

std::size_t FindToReplace(std::string_view text, std::size_t from) {
  return FindFirstOf(text, from, '\r', '\n', '\xFD');
}

}  // namespace

std::optional<TimedText> FetchTimedText(Window1& form, std::int64_t row) {
  const std::string title = Replace(form.Listbox1.Cell(row, 0), "\" lang_default=\"true", "");
  form.TextArea1.SetText("");
  HTTPSocket socket;
  std::string body = socket.Get(AddressOf(form, row), kTimedTextTimeOut);
  if (body.empty() && socket.LastErrorCode() != 0) {
    MsgBox("Error code: " + Str(socket.ErrorCode()) +
               " - A connection to YouTube was not able to be established. Check your internet connection "
               "and try "
               "again.",
           CauseOf(socket, body));
    return std::nullopt;
  }
  TimedText track = CutTimedText(form, DefineEncoding(std::move(body), Encodings::UTF8));
  track.trackTitle = title;
  return track;
}

TimedText CutTimedText(Window1& form, std::string body) {
  TimedTextFields fields = NormaliseTimedText(std::move(body));
  form.TextArea1.SetText(std::move(fields.document));
  return TimedText(form.TextArea1.Share(), std::move(fields.ends));
}

char* Put(char* to, CueText text) {
  const std::string_view raw = text.raw;
  for (std::size_t from = 0;;) {
    const std::size_t end = FindToReplace(raw, from);
    to = Put(to, raw.substr(from, end - from));
    if (end == raw.size()) return to;
    const std::string_view pair = raw.substr(end, 2);
    const bool isPair = pair == "\r\n" || pair == "\xFD\xFF";
    *to++ = raw[end] == '\xFD' && !isPair ? '\xFD' : ' ';
    from = end + (isPair ? 2 : 1);
  }
}

std::string_view CueText::In(std::string& room) const {
  if (FindToReplace(raw, 0) == raw.size()) return raw;
  return room = TextOf(*this);
}

std::string CleanCueText(std::string_view text) { return TextOf(CueText{text}); }

double CueEndSeconds(const TimedTextCue& cue) { return Val(Str(Val(cue.start) + Val(cue.dur))); }
