// Search finds the video code in a link, requests the list of the video's caption tracks, and lists them.
// Neither the link nor the reply is parsed; both are cut at literal texts.
//
//   link   = any "?v=" code tail                   cut at "v=", as far as the next one
//          | any ShortLinkHost "/" code tail       cut at ".be/"
//   reply  = header `">` *( track `"/>` ) closing
//   track  = `<track id="` number `" name="` name `" ` ... `lang_code="` code `"` ...
//            `lang_translated="` language [ `" lang_default="true` ]

#include "tracks/search.h"

#include <algorithm>
#include <optional>

#include "app/App.h"
#include "app/Window1.h"
#include "http/HTTPSocket.h"
#include "http/cause.h"
#include "runtime/RegEx.h"
#include "runtime/Text.h"
#include "runtime/byte_search.h"

namespace {

constexpr std::int64_t kTrackListTimeOut = 300;  // seconds without progress

// The text after the first delimiter; nullopt without one.
std::optional<std::string_view> After(std::string_view text, std::string_view delimiter) {
  const std::size_t at = FindText(text, delimiter);
  if (at == std::string_view::npos) return std::nullopt;
  return text.substr(at + delimiter.size());
}

std::string_view Before(std::string_view text, std::string_view delimiter) {
  return text.substr(0, FindText(text, delimiter));
}

// The text between the first delimiter and the next one, or the end; nullopt without a delimiter.
std::optional<std::string_view> FieldOne(std::string_view text, std::string_view delimiter) {
  const auto rest = After(text, delimiter);
  return rest ? Before(*rest, delimiter) : rest;
}

// The text up to and with the first of these bytes, or all of it.
std::string_view UpTo(std::string_view text, char end) {
  return text.substr(0, std::min(text.find(end), text.size() - 1) + 1);
}

// nullopt for a text that is no link to a video. The expressions accept more than the cut: "?V=" in capitals,
// or another character in place of the host's dot.
std::optional<std::string_view> VideoCode(const std::string& link) {
  RegEx longLink;
  longLink.SearchPattern = "\\?v=";
  if (longLink.Search(link)) return FieldOne(link, "v=");
  RegEx shortLink;
  shortLink.SearchPattern = App::Get().endpoints.ShortLinkHost + "/";
  if (shortLink.Search(link)) return FieldOne(link, ".be/");
  return std::nullopt;
}

// Between searches both lists have the same number of rows (see UnfinishedLists).
void RemoveOldRows(Window1& form) {
  if (form.Listbox1.ListCount() == 0) return;
  form.TextArea1.SetText("");
  for (std::int64_t row = form.Listbox1.ListCount() - 1; row >= 0; --row) {
    form.Listbox1.RemoveRow(row);
    form.XMLList.RemoveRow(row);
    RuntimeBackgroundTask();
  }
}

// Put after each tag, to cut the reply into its elements.
constexpr std::string_view kMark = ":::";
std::string Marked(std::string_view reply) {
  std::string marked;
  marked.reserve(reply.size() + reply.size() / 16);
  for (std::string_view tag; !reply.empty(); reply.remove_prefix(tag.size())) {
    tag = UpTo(reply, '>');
    marked += tag;
    if (tag.ends_with("\">") || tag.ends_with("\"/>")) marked += kMark;
  }
  return marked;
}

struct Track {
  std::string name, code;
};

// nullopt if the element is not a track.
std::optional<Track> TrackIn(std::string_view element) {
  const auto fromCode = After(element, "lang_code=\"");
  const auto upToNext = FieldOne(element, "lang_code=");
  const auto name = upToNext ? FieldOne(*upToNext, "lang_translated=\"") : std::nullopt;
  if (!fromCode || !name) return std::nullopt;
  const std::string_view code = Before(Before(UpTo(*fromCode, '"'), "lang_code=\""), "\"");
  return Track{Replace(Replace(std::string(*name), "\"/>", ""), "\" lang_default=\"true", ""),
               std::string(code)};
}

// The tracks in the elements between the first mark and the last, each of which becomes a row without its
// number and empty name. Nothing if any element is not a track, as in an error page.
std::vector<Track> TracksIn(std::string_view marked, Listbox& rows) {
  std::vector<Track> tracks;
  for (std::size_t mark = marked.find(kMark), next; mark != std::string_view::npos; mark = next) {
    const std::size_t from = mark + kMark.size();
    next = marked.find(kMark, from);
    if (next == std::string_view::npos) break;
    std::string element = ReplaceAll(std::string(marked.substr(from, next - from)), "<track id=\"", "");
    element = ReplaceAll(std::move(element), "\" name=\"\" ", " ");
    auto track = TrackIn(element);
    if (!track) {
      rows.RemoveRowsFrom(0);
      return {};
    }
    rows.AddRow(std::move(element));
    tracks.push_back(std::move(*track));
    RuntimeBackgroundTask();
  }
  return tracks;
}

// Clears both lists if the search does not finish: the next one would take their rows for its own tracks.
class UnfinishedLists {
 public:
  explicit UnfinishedLists(Window1& form) : form_(form) {}
  ~UnfinishedLists() {
    if (isDone_ || Window1::OpenOrNil() != &form_) return;
    form_.Listbox1.RemoveRowsFrom(0);
    form_.XMLList.RemoveRowsFrom(0);
  }
  UnfinishedLists(const UnfinishedLists&) = delete;
  UnfinishedLists& operator=(const UnfinishedLists&) = delete;

  void Done() { isDone_ = true; }

 private:
  Window1& form_;
  bool isDone_ = false;
};

}  // namespace

void TakeTrackList(Window1& form, std::string_view reply) {
  const auto marked = std::make_shared<const std::string>(Marked(reply));
  form.TextArea1.SetText(marked);
  for (Track& track : TracksIn(*marked, form.XMLList)) {
    form.Listbox1.AddRow(std::move(track.name));
    form.Listbox1.SetCell(form.Listbox1.LastIndex(), 1, std::move(track.code));
    RuntimeBackgroundTask();
  }
}

void Search(Window1& form) {
  if (form.TextField1.Text().empty()) return MsgBox("Please paste a YouTube URL into the form first.");
  const auto found = VideoCode(form.TextField1.Text());
  if (!found) return MsgBox("This does not appear to be a YouTube URL.");
  const std::string code(*found);
  UnfinishedLists lists(form);
  RemoveOldRows(form);
  App& app = App::Get();
  app.vidCode = code;

  HTTPSocket socket;
  const std::string address =
      "http://" + app.endpoints.TrackListEndpoint + "/timedtext?type=list&v=" + app.vidCode;
  const std::string reply = socket.Get(address, kTrackListTimeOut);
  TakeTrackList(form, reply);
  lists.Done();
  app.progress.languages = form.Listbox1.ListCount();
  if (form.Listbox1.ListCount() == 0) {
    MsgBox(
        "There are no transcripts available for this video. Auto-generated transcripts contain no data and cannot be downloaded.",
        CauseOf(socket, reply));
  }
}
