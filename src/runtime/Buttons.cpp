#include "runtime/Buttons.h"

#include "runtime/Window.h"

bool Button::UserClicks() {
  if (!IsUsable()) return true;
  TakeClick();
  Raise([this] { RaiseAction(); });
  return true;
}

void CheckBox::SetValue(bool value) {
  if (value == value_) return;
  Set(value_, value);
  RaiseAction();
}

void RadioButton::SetValue(bool value) {
  if (value == value_) return;
  if (!value) return Set(value_, false);
  SelectInGroup();
  RaiseAction();
}

void RadioButton::SelectInGroup() {
  for (Control* control : Owner().Controls()) {
    if (control == this || control->Kind() != ControlKind::RadioButton) continue;
    auto& other = static_cast<RadioButton&>(*control);
    other.Set(other.value_, false);
  }
  Set(value_, true);
}
