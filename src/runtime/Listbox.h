// A list of rows of text cells. Rows and columns count from 0; a row or column that is not there
// raises OutOfBoundsException. A view reads the rows from here and keeps no copy.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/Control.h"

// What a view needs to draw a list.
struct ListLook {
  int columns = 1;
  std::string columnWidths = {};  // such as "100,*": points, "*" for the rest
  int gridHorizontal = 0;         // 0 none, 2 thin solid
  int gridVertical = 0;           // 0 none, 3 thick solid
  bool severalSelectable = false;
  std::string clickOpens = {};             // what a click on a row does, as a menu calls it; "" for nothing
  std::vector<std::string> headings = {};  // what a screen reader calls the columns
};

class Listbox : public Control {
 public:
  Listbox(Window& owner, ListLook look);

  const ListLook& Columns() const { return list_; }
  std::int64_t ListCount() const;
  std::int64_t SelCount() const { return selCount_; }
  // The row that AddRow added last; -1 before the first.
  std::int64_t LastIndex() const { return lastIndex_; }
  const std::string& Cell(std::int64_t row, std::int64_t column) const;
  void SetCell(std::int64_t row, std::int64_t column, std::string text);
  bool Selected(std::int64_t row) const;

  // Adds a row behind the last, with this text in column 0.
  void AddRow(std::string text);
  void RemoveRow(std::int64_t row);
  // Drops all rows from this one on.
  void RemoveRowsFrom(std::int64_t row);

  // The result says whether the click was dealt with, so that the list need not select the row.
  std::function<bool(std::int64_t row, std::int64_t column, int x, int y)> CellClick;
  // The person selects exactly these rows, or clicks into a cell; a click selects its row alone.
  void PersonSelects(const std::vector<std::int64_t>& rows);
  void PersonClicksCell(std::int64_t row, std::int64_t column, int x = 0, int y = 0);

  // Grows with every change but to the last row and the adding of rows behind it, so that a view
  // that has drawn n rows and sees the same number knows that the first n - 1 stand as they were.
  std::int64_t Revision() const { return revision_; }

 private:
  std::size_t Index(std::int64_t row, std::int64_t column) const;
  void Touch();

  ListLook list_;
  std::vector<std::string> cells_;  // row by row
  std::vector<bool> selected_;
  std::int64_t selCount_ = 0;
  std::int64_t lastIndex_ = -1;
  std::int64_t revision_ = 0;
};
