#include "SessionPlatform.h"

#include "runtime/Application.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"

void SessionPlatform::MessageBox(const std::string& text, const std::string& cause) {
  printer_.Message(text, cause);
}

std::optional<std::string> SessionPlatform::AskSavePath(const std::string& filter, const std::string& name) {
  std::optional<std::string> path;
  if (!saves_.empty()) {
    path = saves_.front();
    saves_.pop_front();
  }
  printer_.Save(filter, name, path);
  return path;
}

void SessionPlatform::ShowURL(const std::string& address) { printer_.Browse(address); }

void SessionPlatform::Launch(const std::string& path) { printer_.Launch(path); }

// A session receives no events while it waits.
void SessionPlatform::ProcessEvents(int milliseconds, const Awaited& awaited) {
  IsReadyWithin(milliseconds, awaited);
}

void SessionPlatform::WindowShown(Window& window) { printer_.Show(window.Name()); }

void SessionPlatform::WindowClosed(Window& window) { printer_.Close(window.Name()); }

void SessionPlatform::ControlFocused(Control& control) {
  printer_.Focus(control.Owner().Name() + "." + control.Name());
}

void SessionPlatform::Edit(EditAction action) {
  Control* focus = Application::Current().FocusedControl();
  if (focus && focus->Kind() == ControlKind::TextField)
    static_cast<TextField*>(focus)->UserEdits(action, clipboard_);
}

void SessionPlatform::CommandEnded(const std::string& outcome) {
  if (!outcome.empty()) printer_.Outcome(outcome);
}
