#include "runtime/Platform.h"

#include <chrono>

#include "runtime/Application.h"
#include "runtime/Control.h"

namespace {

std::int64_t SteadyTicks() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::duration<std::int64_t, std::ratio<1, 60>>>(now).count();
}

}  // namespace

std::int64_t Platform::Ticks() { return SteadyTicks(); }

bool Platform::CanEdit(EditAction) {
  const Application* app = Application::CurrentOrNil();
  const Control* focus = app ? app->FocusedControl() : nullptr;
  return focus && focus->Kind() == ControlKind::TextField;
}

Platform* Platform::Current() {
  Application* app = Application::CurrentOrNil();
  return app ? &app->Host() : nullptr;
}

void MsgBox(const std::string& text, const std::string& cause) {
  Application& app = Application::Current();
  app.AwaitUser([&] { app.Host().MessageBox(text, cause); });
}

std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) {
  std::optional<std::string> path;
  if (Application* app = Application::CurrentOrNil()) {
    app->AwaitUser([&] { path = app->Host().AskSavePath(filter, name); });
  }
  return path;
}

void ShowURL(const std::string& address) { Application::Current().Host().ShowURL(address); }

std::int64_t Ticks() {
  Platform* host = Platform::Current();
  return host ? host->Ticks() : SteadyTicks();
}
