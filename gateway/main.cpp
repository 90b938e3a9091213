#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>

#include "gateway/AllSources.h"
#include "gateway/options.h"
#include "gateway/server/Server.h"
#include "gateway/server/listener.h"
#include "gateway/sources/log.h"

namespace {

using namespace gateway;

// Opens descriptors 0 to 2 if they are closed, so that no file or socket gets their numbers.
void OpenStandardDescriptors() {
  int opened = 0;
  do {
    opened = ::open("/dev/null", O_RDWR);
  } while (opened >= 0 && opened <= 2);
  if (opened > 2) ::close(opened);
}

// A descriptor that is readable once a signal asks the process to end. Also makes a failed write return an
// error instead of raising a signal, and lets children be waited for even if the gateway was started with
// SIGCHLD ignored. Requires: no thread has been started, so that all inherit the mask.
Descriptor EndSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
}

// A missing folder is only marked in the start line; it may be made later.
void LogUnreadable(const std::vector<std::string>& folders) {
  for (const auto& folder : folders) {
    if (DIR* found = ::opendir(folder.c_str())) {
      ::closedir(found);
    } else if (errno != ENOENT) {
      Log("can't read the folder " + folder + "; it counts as empty until it can be read");
    }
  }
}

int Serve(const Options& options) {
  ::mallopt(M_ARENA_MAX, 1);  // separate heaps of many threads would keep the memory of large answers
  auto handedOver = TakeHandedOver();
  OpenStandardDescriptors();
  const Descriptor end = EndSignals();
  const Descriptor listener = handedOver ? std::move(*handedOver) : ListenOnLoopback(options.Port());
  AllSources sources(options, end.Number());
  LogUnreadable(options.Values("--folder"));
  std::printf("ravelyn-gateway: %s serves %s\n", AddressOf(listener).c_str(), sources.Summary().c_str());
  std::fflush(stdout);
  Server(sources.Whole())
      .Serve(listener.Number(), {end.Number(), options.Has("--stop-with-input") ? STDIN_FILENO : -1});
  return 0;
}

// Flushes at once, since a write that fails at the end of the process would go unnoticed.
int Print(const std::string& text) {
  return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}

int Run(const Options& options) {
  if (options.Has("--help")) return Print(HelpText());
  if (options.Has("--version")) return Print(std::string("ravelyn-gateway ") + RAVELYN_VERSION + "\n");
  return Serve(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(Options({argv + 1, argv + argc}));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "ravelyn-gateway: %s\n%s\n", error.what(), kUsage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ravelyn-gateway: %s\n", error.what());
    return 1;
  }
}
