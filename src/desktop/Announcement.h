// What a window has a screen reader say, with nothing to see.
#pragma once

#include <QWidget>

class Announcement : public QWidget {
 public:
  explicit Announcement(QWidget& content);

  // Says text once, without a move of the focus; nothing for "". A screen reader comes for the text a moment
  // later, so what may follow at once takes an announcement of its own.
  void say(const QString& text);
  // What was said is not so any more.
  void takeBack();
};
