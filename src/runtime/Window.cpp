#include "runtime/Window.h"

#include <algorithm>

#include "runtime/Application.h"

Window::Window(Application& app, std::string name, WindowFrame frame)
    : app_(app),
      name_(std::move(name)),
      frame_(std::move(frame)),
      width_(frame_.width),
      height_(frame_.height) {}

Control* Window::FindControl(const std::string& name) const {
  const auto at =
      std::find_if(controls_.begin(), controls_.end(), [&](Control* c) { return c->Name() == name; });
  return at == controls_.end() ? nullptr : *at;
}

void Window::Show() {
  visible_ = true;
  app_.Activate(*this);
  app_.Host().WindowShown(*this);
}

void Window::Close() { app_.CloseWindow(*this); }

void Window::UserActivates() {
  if (visible_) app_.Activate(*this);
}

void Window::UserResizes(int width, int height) {
  width = std::clamp(width, frame_.minWidth, frame_.maxWidth);
  height = std::clamp(height, frame_.minHeight, frame_.maxHeight);
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  Raise([this] { Event_Resizing(); });
}

void Window::RecordFocus(Control& control) { app_.RecordFocus(&control); }

void Window::MoveFocus(Control& control) {
  RecordFocus(control);
  app_.Host().ControlFocused(control);
}

void Window::Raise(const std::function<void()>& handler) { app_.Dispatch(this, handler); }

void Window::Place(std::initializer_list<Placement> rows) {
  for (const Placement& row : rows) row.control.Construct(row);
}

Window* Window::Find(const std::string& name) { return Application::Current().FindWindow(name); }

Window& Window::Register(std::unique_ptr<Window> window, Opening opening) {
  Application& app = window->app_;
  Window& made = app.AddWindow(std::move(window));
  if (made.frame_.visible) made.Show();
  if (opening == Opening::AtOnce) {
    made.Event_Open();
  } else {
    app.Post(&made, [&made] { made.Event_Open(); });
  }
  return made;
}
