// The line at the foot of a window: which command runs, with a button that stops it, or how the last one
// ended.
#pragma once

#include <QRect>
#include <QString>
#include <QTimer>
#include <functional>

#include "desktop/Announcement.h"

class QLabel;
class QPushButton;

class StatusLine {
 public:
  // window owns its widgets. stop is called when the user presses the button.
  StatusLine(QWidget& window, const std::function<void()>& stop);

  void updateFont();  // takes the desktop's
  void place(const QRect& line);
  // "" shows nothing. Text that is too long is elided in the middle.
  void show(const QString& text, bool running);
  // A screen reader announces, once, which command runs or how it ended.
  void announceRunning(const QString& what) { running_->announce(what); }
  void announceEnded(const QString& outcome) { ended_->announce(outcome); }

 private:
  void fit();

  QLabel* label_;
  Announcement* running_;
  Announcement* ended_;
  QPushButton* stop_;
  QString text_;
  QTimer withdrawal_;  // withdraws the announcement of a command some time after its end
};
