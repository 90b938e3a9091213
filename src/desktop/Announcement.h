// A text that a screen reader reads out for a window, with nothing on the screen.
#pragma once

#include <QWidget>

class Announcement : public QWidget {
 public:
  explicit Announcement(QWidget& content);

  // Announces text once, without moving the focus; "" announces nothing. A screen reader fetches the text a
  // moment later, so a text that may follow at once needs an Announcement of its own.
  void announce(const QString& text);
  // The announced text no longer applies.
  void withdraw();
};
