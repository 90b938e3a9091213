// A button that can't be used while a command runs. It then looks disabled, and is announced as disabled, but
// keeps the keyboard focus and its place in the tab order.
#pragma once

#include <QPushButton>
#include <QStyleOptionButton>

class BusyPushButton : public QPushButton {
 public:
  using QPushButton::QPushButton;
  bool isBusy() const { return busy_; }
  void setBusy(bool busy);

 protected:
  void initStyleOption(QStyleOptionButton* option) const override;

 private:
  bool busy_ = false;
};
