#include "app/Window1.h"
#include "conversion.h"
#include "tracks/search.h"

void ListTracksByUs(Window1& window, const std::string& document) {
  window.XMLList.RemoveRowsFrom(0);
  window.Listbox1.RemoveRowsFrom(0);
  TakeTrackList(window, document);
}

std::vector<Track> RowsOf(const Window1& window) {
  std::vector<Track> rows;
  for (std::int64_t row = 0; row < window.Listbox1.ListCount(); ++row) {
    rows.push_back({window.Listbox1.Cell(row, 0), window.Listbox1.Cell(row, 1)});
  }
  return rows;
}
