// A reply of any bytes to Search: the rows agree with each other and with the message, and the next search,
// with a well-formed list, shows exactly that list.

#include <cstddef>

#include "runtime/Text.h"
#include "support/Harness.h"

namespace {

constexpr char kWellFormed[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript_list docid=\"1\">"
    "<track id=\"0\" name=\"\" lang_code=\"en\" lang_translated=\"English\" lang_default=\"true\"/>"
    "<track id=\"1\" name=\"x\" lang_code=\"de\" lang_original=\"Deutsch\" lang_translated=\"German\"/>"
    "</transcript_list>";

void Search(fuzz::Program& program, const std::string& reply) {
  wire::Reset([&](const std::string&) { return wire::Reply{wire::Page(reply)}; });
  program.form.TextField1.UserTypes("https://www.youtube.com/watch?v=hB7rV2kQx0w");
  HOLDS(program.form.PushButton2.UserClicks());
}

// The number of elements and headers that end in a text without ":::".
std::int64_t Ends(const std::string& reply) {
  std::int64_t ends = 0;
  for (std::size_t i = 0; i < reply.size(); ++i) {
    ends += reply.compare(i, 2, "\">") == 0 || reply.compare(i, 3, "\"/>") == 0;
  }
  return ends;
}

void CheckRows(fuzz::Program& program, const std::string& reply) {
  const Listbox& tracks = program.form.Listbox1;
  const std::string reduced = ReplaceAll(ReplaceAll(reply, "<track id=\"", ""), "\" name=\"\" ", " ");
  HOLDS(tracks.SelCount() == 0);
  HOLDS(tracks.ListCount() == program.form.XMLList.ListCount());
  HOLDS(program.TakeMessages().size() == (tracks.ListCount() == 0 ? 1U : 0U));
  for (std::int64_t row = 0; row < tracks.ListCount(); ++row) {
    HOLDS(tracks.Cell(row, 1).find('"') == std::string::npos);
    HOLDS(reduced.find("lang_code=\"" + tracks.Cell(row, 1)) != std::string::npos);
  }
  if (reply.find(':') != std::string::npos || tracks.ListCount() == 0) return;
  HOLDS(tracks.ListCount() == Ends(reply) - 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string reply = input.Rest();
  fuzz::Program program;
  Search(program, reply);
  CheckRows(program, reply);
  Search(program, kWellFormed);
  HOLDS(program.form.Listbox1.ListCount() == 2 && program.form.XMLList.ListCount() == 2);
  HOLDS(program.form.Listbox1.Cell(0, 0) == "English" && program.form.Listbox1.Cell(0, 1) == "en");
  HOLDS(program.form.Listbox1.Cell(1, 0) == "German" && program.form.Listbox1.Cell(1, 1) == "de");
  return 0;
}
