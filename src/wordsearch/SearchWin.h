// The window of the word search's hits: column 0 a start time such as 00:01:02.500, column 1 the whole text
// of the cue. The hits are stored nowhere else.
#pragma once

#include "runtime/Buttons.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"

class SearchWin : public Window {
 public:
  SearchWin();
  // Creates, shows and opens the window at the first call, and again, empty, after it was closed.
  static SearchWin& Get() { return GetOrMake<SearchWin>(kName, Opening::AtOnce); }
  static SearchWin* OpenOrNil() { return static_cast<SearchWin*>(Find(kName)); }
  static constexpr char kName[] = "SearchWin";

  Label searchTerm{*this};
  Listbox resultsList{*this,
                      {.columns = 2,
                       .columnWidths = "100,*",
                       .gridHorizontal = 2,
                       .gridVertical = 3,
                       .clickOpens = "Open in Browser",
                       .headings = {"Time", "Text"}}};
  Label Label1{*this};
  PushButton closeBtn{*this};
  PushButton saveBtn{*this};

  // Opens the video in the browser at the time of the row; the column is ignored.
  bool resultsList_CellClick(std::int64_t row, std::int64_t column, int x, int y);
  // Saves the rows as a text file and opens it.
  //   file = heading LF LF *( "[" time "]" TAB text LF LF ) LF
  void saveBtn_Action();
  void closeBtn_Action();
  std::string timecodeToSecs(const std::string& timecode) const;

 protected:
  void Event_Open() override;
  void Event_Resizing() override;

 private:
  std::string ResultsBody();
};
