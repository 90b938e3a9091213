// What a window has a screen reader say, with nothing to see.
#pragma once

#include <QWidget>

class Announcement : public QWidget {
 public:
  explicit Announcement(QWidget& content);

  // Says text once, without a move of the focus. Nothing for "".
  void say(const QString& text);
};
