// The rows of a Listbox as Qt's views read them. It holds no text: a cell is made fit to be seen
// when it is drawn.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>

class Listbox;

class ListModel : public QAbstractTableModel {
 public:
  explicit ListModel(const Listbox& list) : list_(&list) {}

  // Tells the views what has changed since the last call. Rows that the list has lost meanwhile
  // are empty until then. False if nothing but added rows and the last one have changed.
  bool catchUp();
  // The list is about to go; all cells are empty from now on.
  void forget() { list_ = nullptr; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  // Columns have the record's headings, rows none.
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  const Listbox* list_;
  int rows_ = 0;  // that the views know of
  std::int64_t revision_ = 0;
};
