#include "support/FakePlatform.h"

#include <algorithm>
#include <utility>

#include "runtime/TextControls.h"

void FakePlatform::MessageBox(const std::string& text, const std::string& cause) {
  calls.push_back("message: " + text + (cause.empty() ? "" : "\ncause: " + cause));
}

std::optional<std::string> FakePlatform::AskSavePath(const std::string& filter, const std::string& name) {
  calls.push_back("save: " + filter + " " + name);
  if (onSaveDialog) onSaveDialog();
  if (saves.empty()) return std::nullopt;
  auto answer = saves.front();
  saves.pop_front();
  return answer;
}

void FakePlatform::ProcessEvents(int milliseconds, const Awaited& awaited) {
  const bool isSilent = milliseconds > 0 && !IsReadyWithin(std::min(milliseconds, betweenEvents), awaited);
  if (isSilent && onSilence) onSilence();
}

void FakePlatform::Yield() {
  ++yields;
  ticks += ticksEachYield;
  // An action that yields itself is not repeated from inside.
  if (auto action = std::exchange(onYield, nullptr)) {
    action();
    if (!onYield) onYield = std::move(action);
  }
}

void FakePlatform::Edit(EditAction action) {
  Control* focus = Application::Current().FocusedControl();
  if (focus && focus->Kind() == ControlKind::TextField)
    static_cast<TextField*>(focus)->UserEdits(action, clipboard);
}
