// A window as data: its frame, its controls in construction order, and the events that it handles. A host
// draws it from this record and reports what the user does.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "runtime/Control.h"
#include "runtime/Menu.h"

class Application;

// Set at construction and never changed. Sizes are in points.
struct WindowFrame {
  std::string title;
  int width = 0;
  int height = 0;
  int minWidth = 64, minHeight = 64;
  int maxWidth = 32000, maxHeight = 32000;
  bool closeButton = true;
  bool minimizeButton = true;
  bool maximizeButton = false;
  bool fullScreenButton = false;
  bool resizable = true;
  bool visible = false;  // shown when it is created
  bool menuBar = false;  // has the menu bar on a platform without a global one
  bool dialog = false;   // a secondary window, to be read and closed
};

// For the view alone: controls that belong together, in reading order; the first is the heading.
struct ControlGroup {
  std::vector<const Control*> controls;
};

class Window {
 public:
  Window(Application& app, std::string name, WindowFrame frame);
  virtual ~Window() = default;
  Window(const Window&) = delete;

  const std::string& Name() const { return name_; }
  const WindowFrame& Frame() const { return frame_; }
  Application& Owner() const { return app_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Visible() const { return visible_; }
  const std::vector<Control*>& Controls() const { return controls_; }
  const std::vector<ControlGroup>& Groups() const { return groups_; }
  // nullptr if there is none of that name.
  Control* FindControl(const std::string& name) const;

  // Makes the window visible or brings it to the front, and activates it.
  void Show();
  void Close();
  // The user's actions. A new size is clamped to the frame's limits; a changed size raises Resizing.
  void UserActivates();
  void UserCloses() { Close(); }
  void UserResizes(int width, int height);

  // Records that the focus has moved to a control of this window; moves it there.
  void RecordFocus(Control& control);
  void MoveFocus(Control& control);

  const MenuHandlers& OwnMenuHandlers() const { return menuHandlers_; }

  // Set by the view of this window: a value of the control has changed.
  std::function<void(Control&)> OnChange;

 protected:
  virtual void Event_Open() {}
  virtual void Event_Resizing() {}
  void AddMenuHandler(const std::string& item, std::function<bool()> handler) {
    menuHandlers_[item] = std::move(handler);
  }
  void Place(std::initializer_list<Placement> rows);
  void Gather(std::vector<ControlGroup> groups) { groups_ = std::move(groups); }

  // The window of this class, created at the first call. Its Open is raised at once, or after the handler
  // that created it has returned.
  enum class Opening { AtOnce, AfterHandler };
  template <typename W>
  static W& GetOrMake(const char* name, Opening opening);
  // nullptr if no window of that name is open.
  static Window* Find(const std::string& name);

 private:
  friend class Control;
  static Window& Register(std::unique_ptr<Window> window, Opening opening);
  void Raise(const std::function<void()>& handler);

  Application& app_;
  std::string name_;
  WindowFrame frame_;
  int width_;
  int height_;
  bool visible_ = false;
  std::vector<Control*> controls_;
  std::vector<ControlGroup> groups_;
  MenuHandlers menuHandlers_;
};

template <typename W>
W& Window::GetOrMake(const char* name, Opening opening) {
  if (Window* open = Find(name)) return static_cast<W&>(*open);
  return static_cast<W&>(Register(std::make_unique<W>(), opening));
}
