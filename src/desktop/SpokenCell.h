// One cell of a list, or the heading of a column, as a screen reader sees it.
#pragma once

#include <QAccessible>
#include <QPointer>

class ListView;

class SpokenCell : public QAccessibleInterface,
                   public QAccessibleTableCellInterface,
                   public QAccessibleActionInterface {
 public:
  // Row -1 is the row of headings.
  SpokenCell(ListView& list, int row, int column) : list_(&list), row_(row), column_(column) {}

  void* interface_cast(QAccessible::InterfaceType type) override;
  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override { return table(); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;

  bool isSelected() const override;
  QList<QAccessibleInterface*> columnHeaderCells() const override;
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  int columnIndex() const override { return column_; }
  int rowIndex() const override { return row_; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override;

  // Press acts as a click does, if a click does more than select; Toggle selects the row or deselects it.
  QStringList actionNames() const override;
  QString localizedActionDescription(const QString& name) const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  bool isHeading() const { return row_ < 0; }
  QModelIndex index() const;

  QPointer<ListView> list_;
  int row_, column_;
};
