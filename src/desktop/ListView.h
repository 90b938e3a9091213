// A Listbox on the screen, drawn from its rows.
#pragma once

#include <QTableView>

#include "desktop/ListModel.h"
#include "runtime/Listbox.h"

class ListView : public QTableView {
 public:
  ListView(Listbox& record, QWidget& content);

  // Brings rows and selection in line with the record, and reports nothing to it.
  void catchUp();
  // From now on all cells are empty, and the record is not used.
  void forget();
  // One line for each selected row, with a tab between its cells.
  void copySelection() const;
  // The menu's name for what a click does beyond selecting, "" if it does no more.
  QString clickOpens() const { return QString::fromStdString(record_ ? record_->Layout().clickOpens : ""); }
  // Acts as a click on cell.
  void press(const QModelIndex& cell);
  bool severalSelectable() const { return selectionMode() == ExtendedSelection; }

 protected:
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers keys) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void setUp();
  void updateRowHeight();
  std::vector<int> ownWidths() const;
  void layOutColumns();
  void showSelection();
  void drawGrid() const;
  bool selectCurrent();
  // False if a click in this list does nothing beyond selecting.
  bool clickCell(const QModelIndex& cell, QPoint at);

  Listbox* record_;
  ListModel model_;
  QPoint released_;
  bool catchingUp_ = false;
};
