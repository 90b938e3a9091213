// A control as data. Code sets its values; the user's actions arrive through separate calls (User...). Both
// reach the owner's handlers and the view in the same way. Setting the value that is already set raises
// nothing; a click always acts. User actions on a disabled or hidden control have no effect.
#pragma once

#include <functional>
#include <string>

#include "runtime/Placement.h"

class Window;

enum class ControlKind {
  PushButton,
  BevelButton,
  CheckBox,
  RadioButton,
  Label,
  TextField,
  TextArea,
  Listbox,
  Canvas,
  Line
};

class Control {
 public:
  Control(Window& owner, ControlKind kind);
  virtual ~Control() = default;
  Control(const Control&) = delete;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }
  Window& Owner() const { return owner_; }
  const Look& Appearance() const { return look_; }
  int TabIndex() const { return tab_; }

  int Left() const { return left_; }
  int Top() const { return top_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Enabled() const { return enabled_; }
  bool Visible() const { return visible_; }
  void SetLeft(int left) { Set(left_, left); }
  void SetTop(int top) { Set(top_, top); }
  void SetWidth(int width) { Set(width_, width); }
  void SetHeight(int height) { Set(height_, height); }
  void SetEnabled(bool enabled) { Set(enabled_, enabled); }
  void SetVisible(bool visible) { Set(visible_, visible); }

  // Moves the focus here, on the screen too.
  void SetFocus();
  // The user clicks on it; false for a control that takes no clicks.
  virtual bool UserClicks() { return false; }

 protected:
  friend class Window;
  void Construct(const Placement& row);
  virtual void TakeInitialText(const std::string&) {}
  bool IsUsable() const { return enabled_ && visible_; }
  // Reports a changed value to the view.
  void Changed();
  // Runs the handler of an event that the user caused, as one of the owner window.
  void Raise(const std::function<void()>& handler);
  template <typename T>
  void Set(T& member, T value) {
    if (member == value) return;
    member = std::move(value);
    Changed();
  }

 private:
  Window& owner_;
  ControlKind kind_;
  std::string name_;
  Look look_;
  int tab_ = -1;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  bool enabled_ = true;
  bool visible_ = true;
};

// A thin line between two points, measured from the window's upper left corner. In its placement left and top
// are X1 and Y1, width and height X2 and Y2.
class Line : public Control {
 public:
  explicit Line(Window& owner) : Control(owner, ControlKind::Line) {}
  int X1() const { return Left(); }
  int Y1() const { return Top(); }
  int X2() const { return Width(); }
  int Y2() const { return Height(); }
};

// Shows a picture. The text of its placement is the picture's file name among the resources.
class Canvas : public Control {
 public:
  explicit Canvas(Window& owner) : Control(owner, ControlKind::Canvas) {}
  const std::string& Backdrop() const { return backdrop_; }
  // x and y in points from the canvas's upper left corner. Returns whether it has handled the click.
  std::function<bool(int x, int y)> MouseDown;
  bool UserClicks() override { return UserClicksAt(0, 0); }
  bool UserClicksAt(int x, int y);

 private:
  void TakeInitialText(const std::string& file) override { backdrop_ = file; }
  std::string backdrop_;
};
