// Boxes and radio buttons whose frames can be made out: those of Qt's own style stand out from the window by
// a contrast of less than 2.
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
