// Controls under one heading, grouped for a screen reader. A group can't be seen or clicked: the window lays
// it over its whole content, so that the controls keep their places, and masks it to the controls.
#pragma once

#include <QPointer>
#include <QWidget>

class Group : public QWidget {
 public:
  explicit Group(QWidget& content) : QWidget(&content) {}

  // The widget of the heading, which names the group; nullptr before it is made. A heading that labels no
  // field becomes this group's label, or a screen reader would read it as a text of its own.
  QWidget* heading() const { return heading_; }
  void setHeading(QWidget* heading);

 private:
  QPointer<QWidget> heading_;
};
