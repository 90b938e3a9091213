// Draws one window from its record, whichever it is, and reports to it what the person does.
// Changes of the record reach the widgets once per frame.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <unordered_map>
#include <vector>

#include "desktop/StatusLine.h"
#include "desktop/control_views.h"
#include "desktop/menu_actions.h"
#include "runtime/Window.h"

class QMenuBar;
class QScrollArea;

class WindowView : public QWidget {
 public:
  // The record must outlive the view or be forgotten by it first. choose is told the items that
  // the person picks from the menu or by a shortcut.
  WindowView(Window& record, const ChooseItem& choose);
  ~WindowView() override;

  void bringForward();
  void focus(const Control& control);
  // Has a screen reader say what runs, and how it ended, once.
  void announceRunning(const QString& what) { status_.announceRunning(what); }
  void announceEnded(const QString& outcome) { status_.announceEnded(outcome); }
  // Shows that a command runs; and how it ended, which stays until the next one, "" for nothing.
  void showRunning(const QString& what);
  void showEnded(const QString& outcome);
  // The record is about to go. The view shows and reports nothing any more.
  void forget();
  // Brings the widgets in line with the record at once.
  void flush();

  bool isDialog() const { return record_ && record_->Frame().dialog; }
  // nullptr for what is no control of this window.
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
  QSize barsFor(const QSize& whole, const QSize& room) const;
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
  void markAllDirty();
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
  QWidget* content_;
  QScrollArea* scroller_ = nullptr;  // of the content where the screen is too small for it
  StatusLine status_;
  std::vector<Entry> entries_;
  std::unordered_map<const Control*, std::size_t> places_;
  QTimer frame_;          // goes before what its slots use, and takes their connections with it
  bool settled_ = false;  // the first layout is over
  double drawnAt_ = 0;    // the scale
};
