// What only a host can do. The core calls these; a desktop, a tool or a test answers them. All
// calls come on the main thread; texts are UTF-8 as far as what came from outside is.
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

  // Shows text with one button and returns when the user has dismissed it. Below it stands the cause, as
  // plain text, unless it is "".
  virtual void MessageBox(const std::string& text, const std::string& cause) = 0;
  // Asks where to save. filter is "", "TEXT" or the name of a file type; name is a plain file
  // name to start from. nullopt if the person cancels.
  virtual std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) = 0;
  // Opens an address in the person's browser, or a file in the application that the system has
  // for its kind. A host that can't says so itself.
  virtual void ShowURL(const std::string& address) = 0;
  virtual void Launch(const std::string& path) = 0;
  // The folder for settings of this person; made if it is missing. "" if there is none.
  virtual std::string PreferencesFolder() = 0;

  // Delivers what has happened. Where nothing has, sleeps in the kernel until something does, until what
  // is awaited is ready, or until the time is over, and delivers it; -1 doesn't wait.
  virtual void ProcessEvents(int milliseconds, const Awaited& awaited) = 0;
  // The cooperative yield: delivers what is due. Never sleeps, and is called at every pass of
  // every long loop, so it must cost next to nothing.
  virtual void Yield() = 0;

  // A window has become visible or was brought forward; one has left the list of open windows.
  virtual void WindowShown(Window& window) = 0;
  virtual void WindowClosed(Window& window) = 0;
  // The code has put the focus on this control.
  virtual void ControlFocused(Control& control) = 0;
  // The person chose an item of the Edit menu; and whether there is anything for it to act on. A
  // host without a screen allows it while a text field has the focus.
  virtual void Edit(EditAction action) = 0;
  virtual bool CanEdit(EditAction action);
  // A command has started: what is a short phrase for the user. It has ended: outcome says how, "" for
  // nothing.
  virtual void CommandRunning(const std::string& what) = 0;
  virtual void CommandEnded(const std::string& outcome) = 0;

  // The clock behind Ticks: 60 a second, from any start, never backwards.
  virtual std::int64_t Ticks();

  // The host of the running application; nullptr while there is none.
  static Platform* Current();
};

// What they ask of the host; the time that the user takes to answer counts to no command.
void MsgBox(const std::string& text, const std::string& cause = "");
std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name);
void ShowURL(const std::string& address);
