// Check boxes and radio buttons with frames that can be seen: those of Qt's own style have a contrast of less
// than 2 against the window.
#pragma once

#include <QCheckBox>
#include <QRadioButton>

class MarkedCheckBox : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class MarkedRadioButton : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
