// Search finds the video code in a link, requests the list of the video's caption tracks, and lists them.
// Neither the link nor the reply is parsed; both are cut at literal texts.
//
//   link   = any "?v=" code tail                   cut at "v=", as far as the next one
//          | any ShortLinkHost "/" code tail       cut at ".be/"
//   reply  = header `">` *( track `"/>` ) closing
//   track  = `<track id="` number `" name="` name `" ` ... `lang_code="` code `"` ...
//            `lang_translated="` language [ `" lang_default="true` ]

#include "tracks/search.h"

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

// The text between the first delimiter and the next one, or the end; nullopt without a delimiter.
std::optional<std::string_view> FieldOne(std::string_view text, std::string_view delimiter) {
  const std::size_t at = FindText(text, delimiter);
  if (at == std::string_view::npos) return std::nullopt;
  text.remove_prefix(at + delimiter.size());
  return text.substr(0, FindText(text, delimiter));
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

void RemoveOldRows(Window1& form) {
  if (form.Listbox1.ListCount() == 0) return;
  form.TextArea1.SetText("");
  for (std::int64_t row = form.Listbox1.ListCount() - 1; row >= 0; --row) {
    form.Listbox1.RemoveRow(row);
    if (row < form.XMLList.ListCount()) form.XMLList.RemoveRow(row);
    RuntimeBackgroundTask();
  }
}

// Put after each tag, to cut the reply into its elements.
constexpr std::string_view kMark = ":::";
std::string Marked(std::string reply) {
  reply = ReplaceAll(std::move(reply), "\">", "\">" + std::string(kMark));
  return ReplaceAll(std::move(reply), "\"/>", "\"/>" + std::string(kMark));
}

struct Track {
  std::string element;  // without its number and empty name
  std::string name, code;
};

// nullopt if the element is not a track.
std::optional<Track> TrackIn(std::string_view element) {
  std::string text = ReplaceAll(std::string(element), "<track id=\"", "");
  text = ReplaceAll(std::move(text), "\" name=\"\" ", " ");
  const auto code = FieldOne(text, "lang_code=\"");
  const auto fromCode = FieldOne(text, "lang_code=");
  const auto name = fromCode ? FieldOne(*fromCode, "lang_translated=\"") : std::nullopt;
  if (!code || !name) return std::nullopt;
  Track track{"", Replace(Replace(std::string(*name), "\"/>", ""), "\" lang_default=\"true", ""),
              std::string(code->substr(0, code->find('"')))};
  track.element = std::move(text);
  return track;
}

// The tracks in the elements between the first mark and the last. None if any element is not a track, as in
// an error page.
std::vector<Track> TracksIn(std::string_view marked) {
  std::vector<Track> tracks;
  for (std::size_t mark = FindText(marked, kMark), next; mark != std::string_view::npos; mark = next) {
    const std::size_t from = mark + kMark.size();
    next = FindText(marked, kMark, from);
    if (next == std::string_view::npos) break;
    auto track = TrackIn(marked.substr(from, next - from));
    if (!track) return {};
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

void TakeTrackList(Window1& form, std::string reply) {
  const auto marked = std::make_shared<const std::string>(Marked(std::move(reply)));
  form.TextArea1.SetText(marked);
  for (Track& track : TracksIn(*marked)) {
    form.XMLList.AddRow(std::move(track.element));
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
  std::string reply = socket.Get(address, kTrackListTimeOut);
  const std::string cause = CauseOf(socket, reply);
  TakeTrackList(form, std::move(reply));
  lists.Done();
  app.progress.languages = form.Listbox1.ListCount();
  if (form.Listbox1.ListCount() == 0) {
    MsgBox(
        "There are no transcripts available for this video. Auto-generated transcripts contain no data and cannot be downloaded.",
        cause);
  }
}
