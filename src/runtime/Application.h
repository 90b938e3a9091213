// The application object's base: the open windows, the dispatch of events, commands, the menu.
//
// Every event runs in a frame of its own, on one stack. A handler that waits yields, and yields
// deliver further events, so frames nest. A frame belongs to a window or, with nullptr, to the
// application. When its window closes, or the application quits, the frame is ended: its next
// yield throws HandlerEnded, which unwinds the handler and is caught by the dispatch alone.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "runtime/Menu.h"
#include "runtime/Platform.h"

class Control;
class Window;

// Not an exception of the runtime on purpose: nothing between the yield and the dispatch may
// take it for a failure that can be handled.
struct HandlerEnded {};

class Application {
 public:
  using Handler = std::function<void()>;

  explicit Application(Platform& host);
  virtual ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // The one application; NilObjectException if there is none.
  static Application& Current();
  static Application* CurrentOrNil();
  Platform& Host() { return host_; }

  // Raises Open; and ends the handlers that still run, raises Close and closes all windows.
  // Stop is for the outermost level, when no handler is on the stack; it acts once.
  void Start();
  void Stop();
  // The person quits: every running handler is ended, and the host calls Stop when it has control.
  void Quit();
  bool IsQuitting() const { return quitting_; }

  // Runs one event's handler. An exception that it lets out ends it and is shown with its kind
  // and words. Windows that were closed are destroyed when no handler is left on the stack.
  void Dispatch(Window* owner, const Handler& handler);
  // Runs handler as an event when the handler on top of the stack has returned.
  void Post(Window* owner, Handler handler);
  // Runs a command in the frame on top of the stack unless one is running already; then it is ignored.
  // what is a short phrase for the user. A command that was ended counts as over at once, though its
  // frame may still stand on the stack. Requires: called from inside a handler.
  void Command(const std::string& what, const Handler& handler);
  bool IsCommandRunning() const;
  // The user stops the command that runs: it ends as if its window had closed, but the window stays.
  void StopCommand();
  // Which of how many the command is at, as a short phrase for the user; "" where it doesn't count.
  virtual std::string CommandStep() const { return ""; }
  // The handlers on the stack; and whether the one at this place of it, from 1, was ended.
  std::size_t Depth() const { return frames_.size(); }
  bool HasEnded(std::size_t depth) const { return depth > 0 && frames_.at(depth - 1).ended; }
  // Runs what asks the user something and waits for the answer.
  void AwaitUser(const Handler& ask);
  // The handler on top of the stack ends also when a window of this name closes.
  void EndHandlerWith(const std::string& window);
  // Lets events run; waits for them, or for what is awaited, at most so many milliseconds, -1 for not at all.
  void DoEvents(int milliseconds, const Awaited& awaited = {}) { host_.ProcessEvents(milliseconds, awaited); }
  // Throws HandlerEnded if the handler on top of the stack was ended.
  void CheckEnded() const;

  const std::vector<std::unique_ptr<Window>>& Windows() const { return windows_; }
  Window* FindWindow(const std::string& name) const;
  Window& AddWindow(std::unique_ptr<Window> window);
  // The window goes from the list at once and is destroyed later (see Dispatch).
  void CloseWindow(Window& window);
  // The window shown or activated last that is still open and visible; nullptr if there is none.
  Window* ActiveWindow() const { return activated_.empty() ? nullptr : activated_.back(); }
  void Activate(Window& window);
  Control* FocusedControl() const { return focus_; }
  // Moves the focus without telling the host, which moved it itself.
  void NoteFocus(Control* control) { focus_ = control; }

  void SetMenuBar(MenuBar& bar) { menuBar_ = &bar; }
  MenuBar* CurrentMenuBar() const { return menuBar_; }
  void AddMenuHandler(const std::string& item, std::function<bool()> handler) {
    menuHandlers_[item] = std::move(handler);
  }
  // Sets Enabled of every item that enables itself: one that quits, one with a handler, and the
  // Edit items that the host has something for.
  void EnableMenuItems();
  // The person chooses an item; false if the bar has none of that name. One handler runs: that of
  // the active window if it has one, else that of the application.
  bool ChooseMenuItem(const std::string& item);

 protected:
  virtual void Event_Open() {}
  virtual void Event_Close() {}
  // A command begins; and what it came to, as a short phrase for the user, "" for nothing.
  virtual void Event_CommandBegins() {}
  virtual void Event_UserAnswered(std::int64_t) {}               // ticks after being asked
  virtual std::string CommandOutcome(bool) const { return ""; }  // wasStopped

 private:
  struct Frame {
    Window* owner;
    bool ended = false;
    bool isCommand = false;
    std::string endsWith = {};  // a window's name
  };
  struct Posted {
    Window* owner;
    Handler handler;
    std::size_t depth;  // of the handler that posted it, 1 for the outermost
  };
  void RunPosted();
  void End(Frame& frame);
  const std::function<bool()>* MenuHandlerOf(const std::string& item, Window** owner) const;

  Platform& host_;
  std::vector<std::unique_ptr<Window>> windows_;
  std::vector<std::unique_ptr<Window>> closed_;
  std::vector<Frame> frames_;
  std::vector<Posted> posted_;
  MenuHandlers menuHandlers_;
  MenuBar* menuBar_ = nullptr;
  std::vector<Window*> activated_;  // the visible ones, the active one last
  Control* focus_ = nullptr;
  bool quitting_ = false;
  bool stopped_ = false;
};

// The cooperative yield. Long loops call it once in each pass: events are delivered from inside
// it, and a handler that was ended in the meantime is unwound from here.
void RuntimeBackgroundTask();

// The cooperative wait: as DoEvents, and a handler that was ended meanwhile is unwound from here. Without
// an application it is a wait in the kernel.
void AwaitCooperatively(int milliseconds, const Awaited& awaited);
