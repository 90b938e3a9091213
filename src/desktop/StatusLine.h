// The line at the foot of a window: which command runs, with a button that stops it, and how the last one
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
  // Its widgets belong to window. stop is called when the user presses the button.
  StatusLine(QWidget& window, const std::function<void()>& stop);

  void takeLetters();  // of the desktop's size
  void place(const QRect& line);
  // "" shows nothing. Cut in its middle where it is too long.
  void show(const QString& text, bool running);
  // Has a screen reader say what runs, and how it ended, once.
  void announceRunning(const QString& what) { running_->say(what); }
  void announceEnded(const QString& outcome) { ended_->say(outcome); }

 private:
  void fit();

  QLabel* label_;
  Announcement* running_;
  Announcement* ended_;
  QPushButton* stop_;
  QString text_;
  QTimer over_;  // after a command's end, until nobody comes any more to read that it runs
};
