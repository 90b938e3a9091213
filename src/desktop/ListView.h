// A Listbox on the screen: its columns, grid lines and selection, drawn from its rows.
#pragma once

#include <QTableView>

#include "desktop/ListModel.h"
#include "runtime/Listbox.h"

class ListView : public QTableView {
 public:
  ListView(Listbox& record, QWidget& content);

  // Brings rows and selection in line with the record; reports nothing.
  void catchUp();
  void forget();
  // The selected rows, a line each, their cells with a tab between them.
  void copySelection() const;
  // What a click in this list does beyond selecting, as a menu calls it, "" for nothing; and does it.
  QString clickOpens() const { return QString::fromStdString(record_ ? record_->Columns().clickOpens : ""); }
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
  void takeRowHeight();
  int columnNeeds(int column, int own) const;
  void layOutColumns();
  void showSelection();
  void drawGrid() const;
  bool selectCurrent();
  // Acts if a click in this list does anything beyond selecting; false if not.
  bool clickCell(const QModelIndex& cell, QPoint at);

  Listbox* record_;
  ListModel model_;
  QPoint released_;
  bool catchingUp_ = false;
};
