// A control as data. The code sets its values, a person's deeds come in by the Person... calls,
// and both take the same road to the owner's handlers and to the view. A value set anew by code
// raises nothing; a click always acts. Nothing a person does reaches a disabled or hidden control.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

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

enum class Align { Left, Center };

// What only a view reads: set at construction and never changed.
struct Look {
  int fontSize = 0;  // points; 0 is the system's own size
  bool italic = false;
  std::optional<std::uint32_t> color = std::nullopt;  // 0xRRGGBB; nullopt is the system's own
  Align align = Align::Left;
  bool selectable = false;     // a label whose text can be selected
  bool multiline = false;      // a label of several lines
  bool defaultButton = false;  // Return presses it: in the text field before it in the tab order,
                               // and, for the first of a window, wherever no field has its own
  bool startsCommand = false;  // a button that is of no use while a command runs
  bool spellCheck = false;
  std::string placeholder = {};  // shown in a text field while it is empty
  std::string spoken = {};       // what a screen reader calls a control without caption and label
};

class Control;

// One row of a window's table: where the control stands, in points from the window's upper left
// corner, and the caption or text that it starts with.
struct Placement {
  Control& control;
  const char* name;
  int left, top, width, height;
  int tab = -1;  // index in the tab order; -1 for none
  std::string text = {};
  Look look = {};
};

class Control {
 public:
  Control(Window& owner, ControlKind kind);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }
  Window& Owner() const { return owner_; }
  const Look& LookOf() const { return look_; }
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

  // Puts the focus here and tells the host.
  void SetFocus();
  // The person clicks on it; false for a control that takes no clicks.
  virtual bool PersonClicks() { return false; }

 protected:
  friend class Window;
  virtual void Construct(const Placement& row);
  virtual void TakeInitialText(const std::string&) {}
  bool TakesPerson() const { return enabled_ && visible_; }
  // Tells the view that a value has changed.
  void Changed();
  // An event of the person's, with the owner window as the one that handles it.
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

// A thin line from one point to another, in points from the window's upper left corner. In its
// placement left and top are X1 and Y1, width and height X2 and Y2.
class Line : public Control {
 public:
  explicit Line(Window& owner) : Control(owner, ControlKind::Line) {}
  int X1() const { return Left(); }
  int Y1() const { return Top(); }
  int X2() const { return Width(); }
  int Y2() const { return Height(); }
};

// Shows a picture; the text of its placement is the picture's file name among the resources.
class Canvas : public Control {
 public:
  explicit Canvas(Window& owner) : Control(owner, ControlKind::Canvas) {}
  const std::string& Backdrop() const { return backdrop_; }
  void SetBackdrop(const std::string& file) { Set(backdrop_, file); }
  // X and Y in points from the canvas's corner. The result says whether the click was dealt with.
  std::function<bool(int x, int y)> MouseDown;
  bool PersonClicks() override { return PersonClicksAt(0, 0); }
  bool PersonClicksAt(int x, int y);

 private:
  void TakeInitialText(const std::string& file) override { backdrop_ = file; }
  std::string backdrop_;
};
