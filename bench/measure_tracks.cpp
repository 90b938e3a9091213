#include <ostream>
#include <stdexcept>

#include "Turns.h"
#include "app/Window1.h"
#include "conversion.h"
#include "measures.h"
#include "samples.h"

void MeasureTracks(Window1& window, Effort effort, std::ostream& out, Table&) {
  out << "\n## List of tracks, ns per track\n\n"
      << TableRow({"tracks", "us", "pugixml", "us / pugixml"}) << TableRow({"---", "---", "---", "---"});
  for (const std::size_t tracks : {100, 10'000}) {
    const std::string document = TrackListDocument(tracks);
    ListTracksByUs(window, document);
    if (RowsOf(window).size() != tracks || RowsOf(window) != TracksByPugixml(document)) {
      throw std::runtime_error("the lists of tracks differ");
    }
    const auto times = Turns("tracks",
                             {{"us", [&] { ListTracksByUs(window, document); }},
                              {"pugixml", [&] { Keep(TracksByPugixml(document).size()); }}},
                             30'000 / tracks, effort.brief ? 3 : 11);
    const auto each = static_cast<double>(tracks);
    out << TableRow({std::to_string(tracks), Rounded(Median(times[0]) / each, 0),
                     Rounded(Median(times[1]) / each, 0), Rounded(MedianRatio(times[0], times[1]), 2)})
        << std::flush;
  }
  window.XMLList.RemoveRowsFrom(0);
  window.Listbox1.RemoveRowsFrom(0);
}
