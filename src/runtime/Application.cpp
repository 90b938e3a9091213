#include "runtime/Application.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "runtime/Window.h"
#include "runtime/exceptions.h"

namespace {

Application* current = nullptr;

}  // namespace

void RuntimeBackgroundTask() {
  if (!current) return;
  current->Host().Yield();
  current->CheckEnded();
}

void AwaitCooperatively(int milliseconds, const Awaited& awaited) {
  if (!current) return static_cast<void>(IsReadyWithin(milliseconds, awaited));
  current->DoEvents(milliseconds, awaited);
  current->CheckEnded();
}

Application::Application(Platform& host) : host_(host) { current = this; }

Application::~Application() {
  if (current == this) current = nullptr;
}

Application& Application::Current() {
  if (!current) throw NilObjectException("There is no application.");
  return *current;
}

Application* Application::CurrentOrNil() { return current; }

void Application::Start() {
  Dispatch(nullptr, [this] { Event_Open(); });
}

void Application::Stop() {
  if (stopped_) return;
  stopped_ = true;
  Quit();
  Dispatch(nullptr, [this] { Event_Close(); });
  posted_.clear();
  activated_.clear();
  focus_ = nullptr;
  windows_.clear();
}

void Application::Quit() {
  quitting_ = true;
  for (Frame& frame : frames_) End(frame);
}

void Application::Dispatch(Window* owner, const Handler& handler) {
  frames_.push_back({owner});
  try {
    handler();
  } catch (const HandlerEnded&) {
  } catch (const RuntimeException& e) {
    host_.MessageBox(e.Kind() + ": " + e.what(), "");
  } catch (const std::out_of_range&) {
    host_.MessageBox("OutOfBoundsException: An index was outside its array.", "");
  } catch (const std::bad_alloc&) {
    host_.MessageBox("OutOfMemoryException: There is not enough memory for this.", "");
  } catch (const std::exception& e) {
    host_.MessageBox(std::string("Exception: ") + e.what(), "");
  }
  frames_.pop_back();
  RunPosted();
  if (frames_.empty()) closed_.clear();
}

void Application::Post(Window* owner, Handler handler) {
  posted_.push_back({owner, std::move(handler), std::max<std::size_t>(frames_.size(), 1)});
  if (frames_.empty()) RunPosted();
}

void Application::RunPosted() {
  const auto isDue = [this](const Posted& posted) { return posted.depth > frames_.size(); };
  for (;;) {
    const auto due = std::find_if(posted_.begin(), posted_.end(), isDue);
    if (due == posted_.end() || quitting_) return;
    const Posted next = std::move(*due);
    posted_.erase(due);
    Dispatch(next.owner, next.handler);
  }
}

void Application::Command(const std::string& what, const Handler& handler) {
  assert(!frames_.empty());
  if (IsCommandRunning()) return;
  frames_.back().isCommand = true;
  Event_CommandBegins();
  host_.CommandRunning(what);
  struct Running {
    Application& app;
    ~Running() {
      Frame& frame = app.frames_.back();
      frame.isCommand = false;
      if (!frame.ended) app.host_.CommandEnded(app.CommandOutcome(false));
    }
  } running{*this};
  handler();
}

bool Application::IsCommandRunning() const {
  return std::any_of(frames_.begin(), frames_.end(), [](const Frame& f) { return f.isCommand && !f.ended; });
}

void Application::StopCommand() {
  for (Frame& frame : frames_) {
    if (frame.isCommand) End(frame);
  }
}

void Application::AwaitUser(const Handler& ask) {
  const std::int64_t before = ::Ticks();
  ask();
  Event_UserAnswered(::Ticks() - before);
}

void Application::EndHandlerWith(const std::string& window) {
  if (!frames_.empty()) frames_.back().endsWith = window;
}

void Application::End(Frame& frame) {
  if (std::exchange(frame.ended, true)) return;
  if (frame.isCommand) host_.CommandEnded(CommandOutcome(true));
}

void Application::CheckEnded() const {
  if (!frames_.empty() && frames_.back().ended) throw HandlerEnded{};
}

Window* Application::FindWindow(const std::string& name) const {
  for (const auto& window : windows_) {
    if (window->Name() == name) return window.get();
  }
  return nullptr;
}

Window& Application::AddWindow(std::unique_ptr<Window> window) {
  windows_.push_back(std::move(window));
  return *windows_.back();
}

void Application::CloseWindow(Window& window) {
  const auto at = std::find_if(windows_.begin(), windows_.end(), [&](auto& w) { return w.get() == &window; });
  if (at == windows_.end()) return;
  closed_.push_back(std::move(*at));
  windows_.erase(at);
  for (Frame& frame : frames_) {
    if (frame.owner == &window || frame.endsWith == window.Name()) End(frame);
  }
  std::erase_if(posted_, [&](const Posted& posted) { return posted.owner == &window; });
  if (std::ranges::count(window.Controls(), focus_) > 0) focus_ = nullptr;
  std::erase(activated_, &window);
  host_.WindowClosed(window);
  if (frames_.empty()) closed_.clear();
}

void Application::Activate(Window& window) {
  std::erase(activated_, &window);
  activated_.push_back(&window);
}

void Application::EnableMenuItems() {
  if (!menuBar_) return;
  for (Menu& menu : menuBar_->Menus) {
    for (MenuItem& item : menu.Items) {
      if (!item.AutoEnable) continue;
      item.Enabled =
          item.Quits || (item.Edits && host_.CanEdit(*item.Edits)) || MenuHandlerOf(item.Name).second;
    }
  }
}

std::pair<Window*, Application::Handler> Application::MenuHandlerOf(const std::string& item) const {
  if (Window* active = ActiveWindow()) {
    const auto own = active->OwnMenuHandlers().find(item);
    if (own != active->OwnMenuHandlers().end()) return {active, own->second};
  }
  const auto general = menuHandlers_.find(item);
  return {nullptr, general == menuHandlers_.end() ? Handler() : general->second};
}

bool Application::ChooseMenuItem(const std::string& name) {
  MenuItem* item = menuBar_ ? menuBar_->Find(name) : nullptr;
  if (!item) return false;
  EnableMenuItems();
  if (!item->Enabled || !item->Visible) return true;
  if (item->Quits) {
    Quit();
  } else if (item->Edits) {
    host_.Edit(*item->Edits);
  } else {
    const auto [owner, handler] = MenuHandlerOf(name);
    if (handler) Dispatch(owner, handler);
  }
  return true;
}
