// The ground on which a window's controls stand. It draws the lines, which are no widgets.
#pragma once

#include <QWidget>

#include "runtime/Window.h"

class Content : public QWidget {
 public:
  Content(const Window& record, QWidget& window) : QWidget(&window), record_(&record) {}
  // The record is about to go; no lines from now on.
  void forget() { record_ = nullptr; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void drawLine(QPainter& painter, const Line& line) const;
  const Window* record_;
};
