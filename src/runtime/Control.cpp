#include "runtime/Control.h"

#include "runtime/Window.h"

Control::Control(Window& owner, ControlKind kind) : owner_(owner), kind_(kind) {
  owner.controls_.push_back(this);
}

void Control::Construct(const Placement& row) {
  name_ = row.name;
  left_ = row.left;
  top_ = row.top;
  width_ = row.width;
  height_ = row.height;
  tab_ = row.tab;
  look_ = row.look;
  TakeInitialText(row.text);
}

void Control::SetFocus() { owner_.MoveFocus(*this); }

void Control::Changed() {
  if (owner_.OnChange) owner_.OnChange(*this);
}

void Control::Raise(const std::function<void()>& handler) { owner_.Raise(handler); }

bool Canvas::UserClicksAt(int x, int y) {
  if (IsUsable() && MouseDown) Raise([this, x, y] { MouseDown(x, y); });
  return true;
}
