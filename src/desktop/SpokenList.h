// A list as a screen reader sees it: a table of the visible columns, with a row of headings that the screen
// doesn't show, and no row numbers. A cell is made when it is first asked for.
#pragma once

#include <QAccessibleWidget>
#include <QHash>

class ListView;

class SpokenList : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit SpokenList(ListView& list);
  ~SpokenList() override { dropCells(); }

  // Reports event at cell, as Qt's own table would, but with the cell's index among these children.
  static void report(ListView& list, QAccessible::Event event, const QModelIndex& cell);
  // Selects row, in addition to others if the list allows that, or deselects it. False if there is none.
  static bool select(ListView& list, int row, bool selected);

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  int childCount() const override { return indexOf(rowCount(), 0); }
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int row, int column) const override;
  int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
  QList<QAccessibleInterface*> selectedCells() const override;
  QString columnDescription(int column) const override;
  QString rowDescription(int) const override { return {}; }
  int selectedColumnCount() const override { return 0; }
  int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
  int columnCount() const override;
  int rowCount() const override;
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override;
  bool isColumnSelected(int) const override { return false; }
  bool isRowSelected(int row) const override;
  bool selectRow(int row) override { return select(list_, row, true); }
  bool selectColumn(int) override { return false; }
  bool unselectRow(int row) override { return select(list_, row, false); }
  bool unselectColumn(int) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* event) override;

 private:
  // The cell's index among the children; the headings, row -1, come first.
  int indexOf(int row, int column) const { return (row + 1) * columnCount() + column; }
  void dropCells();

  ListView& list_;
  mutable QHash<int, QAccessible::Id> cells_;  // by index as children, hidden columns counted
};
