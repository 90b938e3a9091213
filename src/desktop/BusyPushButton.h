// A button that is of no use while a command runs. It looks and is spoken as disabled then, but keeps the
// focus and its place in the tab order: the user who pressed it by the keyboard stands where he stood.
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
