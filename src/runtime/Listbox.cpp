#include "runtime/Listbox.h"

#include <algorithm>

#include "runtime/exceptions.h"

Listbox::Listbox(Window& owner, ListLayout layout)
    : Control(owner, ControlKind::Listbox), layout_(std::move(layout)) {}

std::int64_t Listbox::ListCount() const { return static_cast<std::int64_t>(selected_.size()); }

std::size_t Listbox::Index(std::int64_t row, std::int64_t column) const {
  if (row < 0 || row >= ListCount() || column < 0 || column >= layout_.columns) {
    throw OutOfBoundsException(Name() + " has no cell in row " + std::to_string(row) + ", column " +
                               std::to_string(column) + ".");
  }
  return static_cast<std::size_t>(row * layout_.columns + column);
}

void Listbox::Touch() {
  ++revision_;
  Changed();
}

const std::string& Listbox::Cell(std::int64_t row, std::int64_t column) const {
  return cells_[Index(row, column)];
}

void Listbox::SetCell(std::int64_t row, std::int64_t column, std::string text) {
  std::string& cell = cells_[Index(row, column)];
  if (cell == text) return;
  cell = std::move(text);
  row == ListCount() - 1 ? Changed() : Touch();
}

bool Listbox::Selected(std::int64_t row) const {
  Index(row, 0);
  return selected_[static_cast<std::size_t>(row)];
}

void Listbox::AddRow(std::string text) {
  lastIndex_ = ListCount();
  cells_.push_back(std::move(text));
  cells_.resize(cells_.size() + static_cast<std::size_t>(layout_.columns - 1));
  selected_.push_back(false);
  Changed();
}

void Listbox::RemoveRow(std::int64_t row) {
  const auto cell = cells_.begin() + static_cast<std::ptrdiff_t>(Index(row, 0));
  const bool wasSelected = Selected(row);
  cells_.erase(cell, cell + layout_.columns);
  selCount_ -= wasSelected ? 1 : 0;
  selected_.erase(selected_.begin() + row);
  lastIndex_ = ListCount() - 1;
  Touch();
}

void Listbox::RemoveRowsFrom(std::int64_t row) {
  if (row < 0 || row >= ListCount()) return;
  cells_.resize(Index(row, 0));
  selected_.resize(static_cast<std::size_t>(row));
  selCount_ = std::count(selected_.begin(), selected_.end(), true);
  lastIndex_ = row - 1;
  Touch();
}

void Listbox::UserSelects(const std::vector<std::int64_t>& rows) {
  for (std::int64_t row : rows) Index(row, 0);
  if (!IsUsable()) return;
  selected_.assign(selected_.size(), false);
  selCount_ = 0;
  for (std::int64_t row : rows) {
    if (selCount_ == 1 && !layout_.severalSelectable) break;
    if (!selected_[static_cast<std::size_t>(row)]) ++selCount_;
    selected_[static_cast<std::size_t>(row)] = true;
  }
  Touch();
}

void Listbox::UserClicksCell(std::int64_t row, std::int64_t column, int x, int y) {
  Index(row, column);
  if (!IsUsable()) return;
  // All inside the event: the handler may close the window and with it destroy this list.
  Raise([&] {
    const bool handled = CellClick && CellClick(row, column, x, y);
    if (!handled && row < ListCount()) UserSelects({row});
  });
}
