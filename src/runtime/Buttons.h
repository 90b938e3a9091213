// Controls that raise Action: buttons, check boxes and radio buttons.
#pragma once

#include "runtime/Control.h"

class Button : public Control {
 public:
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption) { Set(caption_, caption); }
  std::function<void()> Action;
  bool UserClicks() override;

 protected:
  using Control::Control;
  void TakeInitialText(const std::string& text) override { caption_ = text; }
  // Changes the value on a click, before Action is raised.
  virtual void TakeClick() {}
  void RaiseAction() {
    if (Action) Action();
  }

 private:
  std::string caption_;
};

class PushButton : public Button {
 public:
  explicit PushButton(Window& owner) : Button(owner, ControlKind::PushButton) {}
};

class BevelButton : public Button {
 public:
  explicit BevelButton(Window& owner) : Button(owner, ControlKind::BevelButton) {}
};

class CheckBox : public Button {
 public:
  explicit CheckBox(Window& owner) : Button(owner, ControlKind::CheckBox) {}
  bool Value() const { return value_; }
  // Raises Action if the value changes.
  void SetValue(bool value);
  // Sets the initial value; raises nothing.
  void StartWith(bool value) { value_ = value; }

 private:
  void TakeClick() override { Set(value_, !value_); }
  bool value_ = false;
};

// The radio buttons of a window form one group: switching one on switches the others off. Switching off
// raises nothing.
class RadioButton : public Button {
 public:
  explicit RadioButton(Window& owner) : Button(owner, ControlKind::RadioButton) {}
  bool Value() const { return value_; }
  // Raises Action if it switches on.
  void SetValue(bool value);

 private:
  void TakeClick() override { SelectInGroup(); }
  void SelectInGroup();
  bool value_ = false;
};
