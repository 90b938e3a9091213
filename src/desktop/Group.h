// Controls that stand under one heading, held together for a screen reader. Seen, clicked on or dropped at, a
// group is not there: it covers the window's content, cut out to just its controls, which so keep their
// places.
#pragma once

#include <QPointer>
#include <QWidget>
#include <unordered_map>

#include "runtime/Window.h"

class Group : public QWidget {
 public:
  explicit Group(QWidget& content);

  // The widget of the heading, from which the group has its name; nullptr before it is made. One that is no
  // field's label becomes this group's, or it would be read as a text of its own.
  QWidget* heading() const { return heading_; }
  void setHeading(QWidget* heading);

 protected:
  void childEvent(QChildEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWidget> heading_;
};

// The groups of a window, empty, by the controls that belong into them.
std::unordered_map<const Control*, Group*> makeGroups(const Window& record, QWidget& content);
