// Draws any window from its record, and reports to the record what the user does. Changes of the record reach
// the widgets once per frame.
#pragma once

#include <QTimer>
#include <QWidget>
#include <unordered_map>
#include <vector>

#include "desktop/Content.h"
#include "desktop/Group.h"
#include "desktop/StatusLine.h"
#include "desktop/control_views.h"
#include "desktop/menu_actions.h"
#include "runtime/Window.h"

class QMenuBar;
class QScrollArea;

class WindowView : public QWidget {
 public:
  // choose receives each item that the user picks from the menu or by its shortcut.
  // Requires: the record outlives the view, or forget() is called before the record is destroyed.
  WindowView(Window& record, const ChooseItem& choose);
  ~WindowView() override;

  void bringForward();
  void focus(const Control& control);
  // A screen reader announces, once, which command runs or how it ended.
  void announceRunning(const QString& what) { status_.announceRunning(what); }
  void announceEnded(const QString& outcome) { status_.announceEnded(outcome); }
  // Shows which command runs; or, until the next one starts, how it ended, "" for nothing.
  void showRunning(const QString& what);
  void showEnded(const QString& outcome);
  // From now on the view shows and reports nothing, and doesn't use the record.
  void forget();
  // Brings the widgets in line with the record at once.
  void flush();

  bool isDialog() const { return record_ && record_->Frame().dialog; }
  // nullptr if widget is no control of this window.
  Control* controlOf(const QWidget* widget) const;
  QWidget* widgetOf(const Control& control) const;
  // The part below the menu bar, whose size is the record's.
  QWidget& content() const { return *content_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct Entry {
    Control* record;
    ControlView view;
    bool dirty;
  };
  void setUpFrame();
  void takeSize();
  void scroll();
  QSize scrollBarsFor(const QSize& whole, const QSize& available) const;
  int menuHeight(int width) const;
  void fill();
  void setUpMenu(const ChooseItem& choose);
  void addControl(Control& control, QWidget& parent);
  void addControls();
  void setUpFocus();
  std::vector<Entry*> inTabOrder();
  Entry* defaultButton();
  TextField* fieldForDrops() const;
  void showDefaultButton();
  void markDirty(const Control& control);
  void apply(Entry& entry);
  void nameAll();
  void joinToLabel(const Entry& entry);
  void layOut();
  bool stopCommand();
  bool dismissDialog();
  bool openMenu(const QKeyEvent& event);
  bool setBusy(bool busy);

  Window* record_;
  QMenuBar* bar_ = nullptr;
  Content* content_;
  QScrollArea* scroller_ = nullptr;  // of the content, if the screen is too small for it
  StatusLine status_;
  std::vector<Group*> groups_;
  std::vector<Entry> entries_;
  std::unordered_map<const Control*, std::size_t> places_;  // in entries_
  QTimer frame_;          // declared after what its slots use: destroyed first, and its connections with it
  bool settled_ = false;  // the first layout is over
  double drawnScale_ = 0;
};
