#include "runtime/Listbox.h"

#include <algorithm>

#include "runtime/exceptions.h"

Listbox::Listbox(Window& owner, ListLayout layout)
    : Control(owner, ControlKind::Listbox), layout_(std::move(layout)) {}

std::int64_t Listbox::SelCount() const { return std::count(selected_.begin(), selected_.end(), true); }

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
  cells_.push_back(std::move(text));
  cells_.resize(cells_.size() + static_cast<std::size_t>(layout_.columns - 1));
  selected_.push_back(false);
  Changed();
}

void Listbox::RemoveRow(std::int64_t row) {
  const auto cell = cells_.begin() + static_cast<std::ptrdiff_t>(Index(row, 0));
  cells_.erase(cell, cell + layout_.columns);
  selected_.erase(selected_.begin() + row);
  Touch();
}

void Listbox::RemoveRowsFrom(std::int64_t row) {
  if (row < 0 || row >= ListCount()) return;
  cells_.resize(Index(row, 0));
  selected_.resize(static_cast<std::size_t>(row));
  Touch();
}

void Listbox::UserSelects(const std::vector<std::int64_t>& rows) {
  for (std::int64_t row : rows) Index(row, 0);
  if (!IsUsable()) return;
  selected_.assign(selected_.size(), false);
  for (std::int64_t row : rows) {
    selected_[static_cast<std::size_t>(row)] = true;
    if (!layout_.severalSelectable) break;
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
