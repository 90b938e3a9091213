// The area that holds a window's controls. It draws the lines, which have no widgets of their own.
#pragma once

#include <QWidget>

#include "runtime/Window.h"

class Content : public QWidget {
 public:
  Content(const Window& record, QWidget& window) : QWidget(&window), record_(&record) {}
  // From now on no lines are drawn, and the record is not used.
  void forget() { record_ = nullptr; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void drawLine(QPainter& painter, const Line& line) const;
  const Window* record_;
};
