#include "FirstWindow.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;
template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

constexpr std::chrono::seconds kPatience{30};

// The screen, watched from its root window.
class Screen {
 public:
  Screen() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_)) {
      xcb_disconnect(connection_);
      throw std::runtime_error("there is no X display");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_);
  }
  ~Screen() { xcb_disconnect(connection_); }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  xcb_window_t NextMapped(Clock::time_point deadline) const {
    for (;;) {
      while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_), &std::free}) {
        if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) continue;
        const auto* map = reinterpret_cast<const xcb_map_notify_event_t*>(event.get());
        if (!map->override_redirect) return map->window;
      }
      if (Clock::now() > deadline) throw std::runtime_error("no window appeared");
      pollfd wait{xcb_get_file_descriptor(connection_), POLLIN, 0};
      ::poll(&wait, 1, 100);
    }
  }

  // A pixel is black until something is drawn there.
  void WaitForPixels(xcb_window_t window, Clock::time_point deadline) const {
    while (IsBlack(window)) {
      if (Clock::now() > deadline) throw std::runtime_error("the window stays black");
      ::usleep(500);
    }
  }

 private:
  bool IsBlack(xcb_window_t window) const {
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 200, 60, 1, 1, ~0u);
    const Reply<xcb_get_image_reply_t> image{xcb_get_image_reply(connection_, cookie, nullptr), &std::free};
    if (!image || xcb_get_image_data_length(image.get()) < 3) return true;
    const std::uint8_t* pixel = xcb_get_image_data(image.get());
    return pixel[0] == 0 && pixel[1] == 0 && pixel[2] == 0;
  }

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
};

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The bytes in all lines of the process's memory table that start with field.
double MemoryBytes(pid_t process, const std::string& field) {
  std::ifstream table("/proc/" + std::to_string(process) + "/smaps_rollup");
  double sum = 0;
  for (std::string line; std::getline(table, line);) {
    if (line.starts_with(field)) sum += std::strtod(line.c_str() + line.find(':') + 1, nullptr) * 1024;
  }
  return sum;
}

}  // namespace

StartedProgram::StartedProgram(const std::string& path) {
  const Screen screen;
  const auto start = Clock::now();
  char* arguments[] = {const_cast<char*>(path.c_str()), nullptr};
  if (::posix_spawn(&process_, path.c_str(), nullptr, nullptr, arguments, environ) != 0) {
    throw std::runtime_error(path + " can't be started");
  }
  try {
    const xcb_window_t window = screen.NextMapped(start + kPatience);
    shown_ = MillisecondsSince(start);
    screen.WaitForPixels(window, start + kPatience);
    drawn_ = MillisecondsSince(start);
  } catch (...) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    throw;
  }
}

StartedProgram::~StartedProgram() {
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

double StartedProgram::Resident() const { return MemoryBytes(process_, "Rss"); }
double StartedProgram::Private() const { return MemoryBytes(process_, "Private_"); }
