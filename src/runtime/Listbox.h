// A list of rows of text cells. Rows and columns count from 0; an absent row or column raises
// OutOfBoundsException. A view reads the rows from here and keeps no copy.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/Control.h"

// For the view: columns, grid and selection, set at construction.
struct ListLayout {
  int columns = 1;
  std::string columnWidths = {};  // such as "100,*": points, and "*" for the rest
  int gridHorizontal = 0;         // 0 none, 2 thin solid
  int gridVertical = 0;           // 0 none, 3 thick solid
  bool severalSelectable = false;
  std::string clickOpens = {};  // menu caption for what a click on a row does; "" if it does nothing
  std::vector<std::string> headings = {};  // column names for screen readers
};

class Listbox : public Control {
 public:
  Listbox(Window& owner, ListLayout layout);

  const ListLayout& Layout() const { return layout_; }
  int Columns() const { return layout_.columns; }
  std::int64_t ListCount() const { return static_cast<std::int64_t>(selected_.size()); }
  std::int64_t SelCount() const;
  // The last row, so the one that AddRow has just added; -1 if there is none.
  std::int64_t LastIndex() const { return ListCount() - 1; }
  const std::string& Cell(std::int64_t row, std::int64_t column) const;
  void SetCell(std::int64_t row, std::int64_t column, std::string text);
  bool Selected(std::int64_t row) const;

  // Appends a row with this text in column 0.
  void AddRow(std::string text);
  void RemoveRow(std::int64_t row);
  // Removes this row and all rows after it.
  void RemoveRowsFrom(std::int64_t row);

  // Returns whether it has handled the click; otherwise the click selects the row.
  std::function<bool(std::int64_t row, std::int64_t column, int x, int y)> CellClick;
  // The user selects exactly these rows; or clicks a cell, which selects its row alone.
  void UserSelects(const std::vector<std::int64_t>& rows);
  void UserClicksCell(std::int64_t row, std::int64_t column, int x = 0, int y = 0);

  // Grows with every change except an appended row or a change to the last one: while it stays the same, all
  // rows that a view has drawn, but for the last, are up to date.
  std::int64_t Revision() const { return revision_; }

 private:
  std::size_t Index(std::int64_t row, std::int64_t column) const;
  void Touch();

  ListLayout layout_;
  std::vector<std::string> cells_;  // row by row
  std::vector<bool> selected_;
  std::int64_t revision_ = 0;
};
