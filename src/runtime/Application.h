// Base of the application object: dispatches events, runs commands, and keeps the open windows and the menu.
// Calls run down to the windows and on to their controls, and up from a control through its window to here.
//
// Each event handler runs in its own frame on one stack. A handler that waits yields, and a yield delivers
// further events, so frames nest. A frame belongs to a window or, with nullptr, to the application. When its
// window closes or the application quits, the frame is ended: its next yield throws HandlerEnded, which
// unwinds the handler and is caught only by Dispatch.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "runtime/Menu.h"
#include "runtime/Platform.h"

// Deliberately no RuntimeException: nothing between the yield and Dispatch may catch it as a failure.
struct HandlerEnded {};

class Application {
 public:
  using Handler = std::function<void()>;

  explicit Application(Platform& host);
  virtual ~Application();
  Application(const Application&) = delete;

  // The application that exists; NilObjectException if there is none.
  static Application& Current();
  static Application* CurrentOrNil();
  Platform& Host() { return host_; }

  // Raises Open.
  void Start();
  // Ends the running handlers, raises Close and destroys all windows. A second call does nothing.
  // Requires: no handler is on the stack.
  void Stop();
  // The user quits: ends every running handler. The host then calls Stop from its outermost level.
  void Quit();
  bool IsQuitting() const { return quitting_; }

  // Runs the handler of one event. An exception that leaves it is shown to the user by kind and message.
  // Closed windows are destroyed once no handler is left on the stack.
  void Dispatch(Window* owner, const Handler& handler);
  // Runs handler as an event after the handler on top of the stack has returned.
  void Post(Window* owner, Handler handler);
  // Runs a command in the frame on top of the stack; ignored while another command runs. A command that was
  // ended counts as over at once, even if its frame is still on the stack.
  // `what`: short phrase shown to the user. Requires: a handler is running.
  void Command(const std::string& what, const Handler& handler);
  bool IsCommandRunning() const;
  // The user stops the running command: it ends as if its window had closed, but the window stays open.
  void StopCommand();
  // Which item of how many the command is at, as a short phrase for the user; "" if it does not count.
  virtual std::string CommandStep() const { return ""; }
  // The number of handlers on the stack; and whether the one at this depth, from 1, was ended.
  std::size_t Depth() const { return frames_.size(); }
  bool HasEnded(std::size_t depth) const { return depth > 0 && frames_.at(depth - 1).ended; }
  // Runs a question to the user and reports how long the answer took.
  void AwaitUser(const Handler& ask);
  // Also ends the handler on top of the stack when a window of this name closes.
  void EndHandlerWith(const std::string& window);
  // Delivers pending events, waiting up to `milliseconds` for one or for `awaited`; -1 does not wait.
  void DoEvents(int milliseconds, const Awaited& awaited = {}) { host_.ProcessEvents(milliseconds, awaited); }
  // Throws HandlerEnded if the handler on top of the stack was ended.
  void CheckEnded() const;

  const std::vector<std::unique_ptr<Window>>& Windows() const { return windows_; }
  Window* FindWindow(const std::string& name) const;
  Window& AddWindow(std::unique_ptr<Window> window);
  // Removes the window from the list at once; it is destroyed later (see Dispatch).
  void CloseWindow(Window& window);
  // The open and visible window that was shown or activated last; nullptr if there is none.
  Window* ActiveWindow() const { return activated_.empty() ? nullptr : activated_.back(); }
  void Activate(Window& window);
  Control* FocusedControl() const { return focus_; }
  // Records a move of the focus, without asking the host for it.
  void RecordFocus(Control* control) { focus_ = control; }

  void SetMenuBar(MenuBar& bar) { menuBar_ = &bar; }
  MenuBar* CurrentMenuBar() const { return menuBar_; }
  void AddMenuHandler(const std::string& item, std::function<bool()> handler) {
    menuHandlers_[item] = std::move(handler);
  }
  // Sets Enabled of every AutoEnable item: true for one that quits, for one with a handler, and for an Edit
  // item that the host can carry out.
  void EnableMenuItems();
  // The user chooses an item; false if the bar has none of that name. One handler runs: that of the active
  // window or, if it has none, that of the application.
  bool ChooseMenuItem(const std::string& item);

 protected:
  virtual void Event_Open() {}
  virtual void Event_Close() {}
  virtual void Event_CommandBegins() {}
  virtual void Event_UserAnswered(std::int64_t) {}  // ticks from the question to the answer
  // The result of a command that ended or (true) was stopped, as a short phrase for the user; "" if none.
  virtual std::string CommandOutcome(bool) const { return ""; }

 private:
  struct Frame {
    Window* owner;
    bool ended = false;
    bool isCommand = false;
    std::string endsWith = {};  // name of another window whose closing ends the frame
  };
  struct Posted {
    Window* owner;
    Handler handler;
    std::size_t depth;  // of the handler that posted it, 1 for the outermost
  };
  void RunPosted();
  void End(Frame& frame);
  // The handler that runs for an item, and the window that owns it; empty if there is none.
  std::pair<Window*, Handler> MenuHandlerOf(const std::string& item) const;

  Platform& host_;
  std::vector<std::unique_ptr<Window>> windows_;
  std::vector<std::unique_ptr<Window>> closed_;
  std::vector<Frame> frames_;
  std::vector<Posted> posted_;
  MenuHandlers menuHandlers_;
  MenuBar* menuBar_ = nullptr;
  std::vector<Window*> activated_;  // the visible windows, the active one last
  Control* focus_ = nullptr;
  bool quitting_ = false;
  bool stopped_ = false;
};

// The cooperative yield, called in each pass of a long loop: delivers events, and throws HandlerEnded if one
// of them ended the caller's handler.
void RuntimeBackgroundTask();

// The cooperative wait: DoEvents that throws HandlerEnded if the caller's handler was ended. Without an
// application it waits in the kernel.
void AwaitCooperatively(int milliseconds, const Awaited& awaited);
