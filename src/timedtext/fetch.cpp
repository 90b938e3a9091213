#include "timedtext/fetch.h"

#include "app/App.h"
#include "app/Window1.h"
#include "http/HTTPSocket.h"
#include "http/cause.h"
#include "runtime/Numbers.h"

namespace {

constexpr std::int64_t kTimedTextTimeOut = 30;  // seconds without progress

std::string AddressOf(const Window1& form, std::int64_t row) {
  const App& app = App::Get();
  return ReplaceAll("https://" + app.endpoints.TimedTextEndpoint + "/api/timedtext?&v=" + app.vidCode +
                        "&lang=" + form.Listbox1.Cell(row, 1),
                    " ", "");
}

}  // namespace

std::optional<TimedText> FetchTimedText(Window1& form, std::int64_t row) {
  const std::string title = Replace(form.Listbox1.Cell(row, 0), "\" lang_default=\"true", "");
  form.TextArea1.SetText("");
  HTTPSocket socket;
  std::string body = socket.Get(AddressOf(form, row), kTimedTextTimeOut);
  if (body.empty() && socket.LastErrorCode() != 0) {
    MsgBox(
        "Error code: " + Str(socket.ErrorCode()) +
            " - A connection to YouTube was not able to be established. Check your internet connection and try again.",
        CauseOf(socket, body));
    return std::nullopt;
  }
  TimedText track = TimedText::From(DefineEncoding(std::move(body), Encodings::UTF8));
  track.trackTitle = title;
  form.TextArea1.SetText(track.Document());
  return track;
}
