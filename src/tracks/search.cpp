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

namespace {

constexpr std::int64_t kTrackListTimeOut = 300;  // seconds without progress

// The text between the first delimiter and the next one, or the end; nullopt without a delimiter.
std::optional<std::string_view> FieldOne(std::string_view text, std::string_view delimiter) {
  const std::size_t at = text.find(delimiter);
  if (at == std::string_view::npos) return std::nullopt;
  text.remove_prefix(at + delimiter.size());
  return text.substr(0, text.find(delimiter));
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
std::string Marked(std::string_view reply) {
  std::string marked;
  marked.reserve(reply.size() + reply.size() / 16);
  for (std::size_t end; !reply.empty(); reply.remove_prefix(end)) {
    end = std::min(reply.find('>'), reply.size() - 1) + 1;
    const std::string_view upToTagEnd = reply.substr(0, end);
    marked += upToTagEnd;
    if (upToTagEnd.ends_with("\">") || upToTagEnd.ends_with("\"/>")) marked += kMark;
  }
  return marked;
}

struct Track {
  std::string name, code;
};

// nullopt if the element is not a track.
std::optional<Track> TrackIn(std::string_view element) {
  const auto code = FieldOne(element, "lang_code=\"");
  const auto fromCode = FieldOne(element, "lang_code=");
  const auto name = fromCode ? FieldOne(*fromCode, "lang_translated=\"") : std::nullopt;
  if (!code || !name) return std::nullopt;
  return Track{Replace(Replace(std::string(*name), "\"/>", ""), "\" lang_default=\"true", ""),
               std::string(code->substr(0, code->find('"')))};
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
