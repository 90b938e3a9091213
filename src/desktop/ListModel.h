// The rows of a Listbox as Qt's views read them. It keeps no text: a cell's text is made safe to show when
// the cell is drawn.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>

class Listbox;

class ListModel : public QAbstractTableModel {
 public:
  explicit ListModel(const Listbox& list) : list_(&list) {}

  // Reports to the views what has changed since the last call; until then, rows that the list has removed
  // are empty. False if rows were added and the last one may have changed, but nothing else.
  bool catchUp();
  // From now on all cells are empty, and the list is not used.
  void forget() { list_ = nullptr; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  // Columns have the record's headings, rows none.
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  const Listbox* list_;
  int rows_ = 0;  // as last reported to the views
  std::int64_t revision_ = 0;
};
