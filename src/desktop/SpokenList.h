// A list as a screen reader knows it: a table of the columns that are seen, with a row of headings that are
// not, and no numbers of rows. A cell is made when somebody asks for it.
#pragma once

#include <QAccessibleWidget>
#include <QHash>

class ListView;

class SpokenList : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit SpokenList(ListView& list);
  ~SpokenList() override;

  // Reports what happened at cell, as Qt's own table would, but by the cell's place among these children.
  static void say(ListView& list, QAccessible::Event event, const QModelIndex& cell);
  // Selects row, beside others where the list takes that, or no more.
  static void select(ListView& list, int row, bool selected);

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  int childCount() const override;
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
  int selectedRowCount() const override;
  int columnCount() const override;
  int rowCount() const override;
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override;
  bool isColumnSelected(int) const override { return false; }
  bool isRowSelected(int row) const override;
  bool selectRow(int row) override;
  bool selectColumn(int) override { return false; }
  bool unselectRow(int row) override;
  bool unselectColumn(int) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* event) override;

 private:
  // Where the cell stands among the children. The headings stand first, as row -1.
  int indexOf(int row, int column) const { return (row + 1) * columnCount() + column; }
  void dropCells();

  ListView& list_;
  mutable QHash<int, QAccessible::Id> cells_;  // by their index as children
};
