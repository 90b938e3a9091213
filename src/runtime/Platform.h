// What the core cannot do by itself: show windows and dialogs, open files, wait for events. The desktop, a
// tool or a test implements it as the core's host; the core calls it, always from the main thread. Texts are
// UTF-8 unless foreign bytes in them are not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "runtime/await.h"

class Control;
class Window;

// The standard editing commands of a text field.
enum class EditAction { Undo, Cut, Copy, Paste, Clear, SelectAll };

class Platform {
 public:
  virtual ~Platform() = default;

  // Shows text, and below it the cause as plain text unless it is "", with one button. Returns when the user
  // has dismissed it.
  virtual void MessageBox(const std::string& text, const std::string& cause) = 0;
  // Asks where to save. filter is "", "TEXT" or the name of a file type; name is the plain file name to
  // suggest. nullopt if the user cancels.
  virtual std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) = 0;
  // Opens an address in the user's browser, or a file in the system's application for its type. The host
  // itself reports a failure to the user.
  virtual void ShowURL(const std::string& address) = 0;
  virtual void Launch(const std::string& path) = 0;
  // The folder for the user's settings, created if it is missing. "" if there is none.
  virtual std::string PreferencesFolder() = 0;

  // Delivers pending events. If there are none, first sleeps in the kernel until there is one, until
  // `awaited` is ready or for at most `milliseconds`; -1 does not wait.
  virtual void ProcessEvents(int milliseconds, const Awaited& awaited) = 0;
  // The cooperative yield: delivers pending events and never sleeps. Every pass of every long loop calls it,
  // so it must cost next to nothing.
  virtual void Yield() = 0;

  // A window has become visible or was brought to the front; a window has left the list of open windows.
  virtual void WindowShown(Window& window) = 0;
  virtual void WindowClosed(Window& window) = 0;
  // The code has put the focus on this control.
  virtual void ControlFocused(Control& control) = 0;
  // The user chose an item of the Edit menu; and whether it has anything to act on. By default it has while a
  // text field has the focus.
  virtual void Edit(EditAction action) = 0;
  virtual bool CanEdit(EditAction action);
  // A command has started; it has ended. `what` and `outcome`: short phrases for the user; outcome may be "".
  virtual void CommandRunning(const std::string& what) = 0;
  virtual void CommandEnded(const std::string& outcome) = 0;

  // The clock that Ticks reads: 60 a second from any start, never backwards.
  virtual std::int64_t Ticks();

  // The host of the running application; nullptr while there is none.
  static Platform* Current();
};

// These call the host of the running application. The user's time to answer counts for no command.
void MsgBox(const std::string& text, const std::string& cause = "");
std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name);
void ShowURL(const std::string& address);
// A count that grows by 60 every second and never goes back; the host's, so that a test can set it. Without a
// host, the real time.
std::int64_t Ticks();
