// The Search command: finds the video code in a pasted link, asks which caption tracks the video
// has, and lists them. Neither the link nor the reply is parsed; both are cut by literal texts.
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

namespace {

constexpr std::int64_t kTrackListTimeOut = 300;  // seconds without progress

// Field 1 of what delimiter cuts; nullopt if the text is not cut at all.
std::optional<std::string> FieldOne(std::string_view text, std::string_view delimiter) {
  StringArray fields = Split(text, delimiter);
  if (Ubound(fields) < 1) return std::nullopt;
  return std::move(fields[1]);
}

// nullopt for a text that is no link to a video, also where a search accepts what the cut does not:
// "?V=" in capitals, or another character in place of the host's dot.
std::optional<std::string> VideoCode(const std::string& link) {
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

// One row of XMLList for each track element; what stands before the first and behind the last is dropped.
void CutIntoElements(Window1& form) {
  TextArea& buffer = form.TextArea1;
  buffer.SetText(ReplaceAll(buffer.Text(), "\">", "\">:::"));
  buffer.SetText(ReplaceAll(buffer.Text(), "\"/>", "\"/>:::"));
  const StringArray parts = Split(buffer.Text(), ":::");
  for (std::int64_t i = 1; i <= Ubound(parts) - 1; ++i) {
    form.XMLList.AddRow(parts[static_cast<std::size_t>(i)]);
    RuntimeBackgroundTask();
  }
}

// The code and the name that an element holds; false if it holds none.
bool ReduceElement(Listbox& elements, std::int64_t row, StringArray& codes, StringArray& names) {
  elements.SetCell(row, 0, ReplaceAll(elements.Cell(row, 0), "<track id=\"", ""));
  elements.SetCell(row, 0, ReplaceAll(elements.Cell(row, 0), "\" name=\"\" ", " "));
  const auto code = FieldOne(elements.Cell(row, 0), "lang_code=\"");
  const auto fromCode = FieldOne(elements.Cell(row, 0), "lang_code=");
  const auto name = fromCode ? FieldOne(*fromCode, "lang_translated=\"") : std::nullopt;
  if (!code || !name) return false;
  Append(codes, Split(*code, "\"").front());
  Append(names, Replace(*name, "\"/>", ""));
  return true;
}

void ListTracks(Window1& form, const StringArray& codes, const StringArray& names) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const auto row = static_cast<std::int64_t>(i);
    form.Listbox1.AddRow(names.at(i));
    form.Listbox1.SetCell(row, 1, codes[i]);
    form.Listbox1.SetCell(row, 0, Replace(form.Listbox1.Cell(row, 0), "\" lang_default=\"true", ""));
    RuntimeBackgroundTask();
  }
}

// A part that can't be cut makes the whole reply one without tracks, such as an error page. Nothing
// of it stays behind, or its rows would be taken for tracks of the next search.
void ParseTracks(Window1& form) {
  StringArray codes, names;
  bool sound = true;
  for (std::int64_t row = 0; sound && row < form.XMLList.ListCount(); ++row) {
    sound = ReduceElement(form.XMLList, row, codes, names);
    RuntimeBackgroundTask();
  }
  if (sound) {
    ListTracks(form, codes, names);
  } else {
    form.XMLList.RemoveRowsFrom(0);
  }
}

// Rows that a search which was stopped has left would be taken for tracks of the next one.
class Unfinished {
 public:
  explicit Unfinished(Window1& form) : form_(form) {}
  ~Unfinished() {
    if (isDone_ || Window1::OpenOrNil() != &form_) return;
    form_.Listbox1.RemoveRowsFrom(0);
    form_.XMLList.RemoveRowsFrom(0);
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  void Done() { isDone_ = true; }

 private:
  Window1& form_;
  bool isDone_ = false;
};

}  // namespace

void TakeTrackList(Window1& form, std::string reply) {
  form.TextArea1.SetText(std::move(reply));
  CutIntoElements(form);
  ParseTracks(form);
}

void Search(Window1& form) {
  if (form.TextField1.Text().empty()) return MsgBox("Please paste a YouTube URL into the form first.");
  const auto code = VideoCode(form.TextField1.Text());
  if (!code) return MsgBox("This does not appear to be a YouTube URL.");
  Unfinished lists(form);
  RemoveOldRows(form);
  App& app = App::Get();
  app.vidCode = *code;

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
