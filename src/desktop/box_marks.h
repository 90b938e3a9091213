// Check boxes and radio buttons with frames that can be seen: those of Qt's own style have a contrast of less
// than 2 against the window.
#pragma once

#include <QCheckBox>
#include <QRadioButton>

// Draws the frame over what Qt has drawn, if it is needed.
void drawFrame(QCheckBox& box);
void drawFrame(QRadioButton& button);

template <typename Box>
class Marked : public Box {
 public:
  using Box::Box;

 protected:
  void paintEvent(QPaintEvent* event) override {
    Box::paintEvent(event);
    drawFrame(*this);
  }
};
