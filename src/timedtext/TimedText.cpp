#include "timedtext/TimedText.h"

#include <cstring>
#include <stdexcept>

#include "app/App.h"
#include "app/Window1.h"
#include "http/HTTPSocket.h"
#include "runtime/Numbers.h"
#include "runtime/byte_search.h"
#include "runtime/exceptions.h"
#include "timedtext/normalise.h"

namespace {

constexpr std::int64_t kTimedTextTimeOut = 30;  // seconds without progress

std::string AddressOf(const Window1& form, std::int64_t row) {
  const App& app = App::Get();
  return ReplaceAll("https://" + app.endpoints.TimedTextEndpoint + "/api/timedtext?&v=" + app.vidCode +
                        "&lang=" + form.Listbox1.Cell(row, 1),
                    " ", "");
}

// The next separator at or behind from. Its bars are rare, so they are what is looked for.
std::size_t NextSeparator(std::string_view text, std::size_t from) {
  for (std::size_t bar = text.find('|', from + 1); bar != std::string_view::npos;
       bar = text.find('|', bar + 1)) {
    if (text.substr(bar - 1, kSeparator.size()) == kSeparator) return bar - 1;
  }
  return std::string_view::npos;
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
        " - A connection to YouTube was not able to be established. Check your internet connection and try "
        "again.");
    return std::nullopt;
  }
  TimedText track = CutTimedText(form, DefineEncoding(std::move(body), Encodings::UTF8));
  track.trackTitle = title;
  return track;
}

TimedText CutTimedText(Window1& form, std::string body) {
  form.TextArea1.SetText(NormaliseTimedText(std::move(body)));
  return TimedText(form.TextArea1.Share());
}

TimedText::TimedText(SharedText normalised) : document_(std::move(normalised)) {
  if (document_->size() > UINT32_MAX) throw std::length_error("The document is too long.");
  // A cue of three fields takes some hundred bytes; a list that turns out longer grows.
  ends_.reserve(document_->size() / 32);
  std::size_t from = 0;
  for (std::size_t at = NextSeparator(*document_, 0); at != std::string::npos;
       at = NextSeparator(*document_, from)) {
    ends_.push_back(static_cast<std::uint32_t>(at));
    from = at + kSeparator.size();
  }
  ends_.push_back(static_cast<std::uint32_t>(document_->size()));
}

std::string_view TimedText::Field(std::size_t index) const {
  if (index >= ends_.size()) throw OutOfBoundsException("The document has no field at that index.");
  const std::size_t from = index == 0 ? 0 : ends_[index - 1] + kSeparator.size();
  return std::string_view(*document_).substr(from, ends_[index] - from);
}

CueTexts::CueTexts(TimedText track) : track_(std::move(track)) {
  texts_.reserve(track_.Cues());
  for (std::size_t i = 0; i < track_.Cues(); ++i) {
    const std::string_view text = track_.RawText(i);
    if (FindFirstOfThree(text, 0, '\r', '\n', '\xFD') == text.size()) {
      texts_.push_back(kAsItStands);
    } else {
      texts_.push_back(static_cast<std::uint32_t>(cleaned_.Count()));
      cleaned_.Append(CleanCueText(std::string(text)));
    }
    RuntimeBackgroundTask();
  }
}

std::string_view CueTexts::At(std::size_t i) const {
  if (i >= texts_.size()) throw OutOfBoundsException("The track has no such cue.");
  return texts_[i] == kAsItStands ? track_.RawText(i) : cleaned_.At(texts_[i]);
}

// One pass for the four replacements, of which none makes what another looks for.
std::string CleanCueText(std::string text) {
  std::size_t from = FindFirstOfThree(text, 0, '\r', '\n', '\xFD');
  std::size_t to = from;
  while (from < text.size()) {
    const std::string_view pair = std::string_view(text).substr(from, 2);
    const std::size_t length = pair == "\r\n" || pair == "\xFD\xFF" ? 2 : 1;
    const bool isAlone = text[from] == '\xFD' && length == 1;
    text[to++] = isAlone ? '\xFD' : ' ';
    from += length;
    const std::size_t next = FindFirstOfThree(text, from, '\r', '\n', '\xFD');
    std::memmove(text.data() + to, text.data() + from, next - from);
    to += next - from;
    from = next;
  }
  text.resize(to);
  return text;
}

double CueEndSeconds(const TimedTextCue& cue) { return Val(Str(Val(cue.start) + Val(cue.dur))); }
