#include <dirent.h>
#include <sys/signalfd.h>

#include <csignal>
#include <cstdio>
#include <exception>

#include "gateway/options.h"
#include "gateway/server/Server.h"
#include "gateway/server/listener.h"
#include "gateway/sources/FolderSource.h"

namespace {

using namespace gateway;

// A descriptor that can be read once the process is told to end. Comes before any thread, so that all
// inherit the mask.
Descriptor EndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
}

void TellMissing(const std::vector<std::string>& folders) {
  for (const auto& folder : folders) {
    if (DIR* found = ::opendir(folder.c_str())) {
      ::closedir(found);
    } else {
      std::fprintf(stderr,
                   "ravelyn-gateway: can't read the folder %s; it counts as empty until it can be read\n",
                   folder.c_str());
    }
  }
}

std::string Counted(std::size_t count, const char* one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

void TellStock(const FolderSource& source, const Options& options, const std::string& address) {
  const auto stock = source.TakeStock();
  std::string line = "ravelyn-gateway: " + address + " serves " + Counted(stock.videos, "video") + " with " +
                     Counted(stock.tracks, "track") + " from";
  for (const auto& folder : options.folders) line += (&folder == &options.folders[0] ? " " : ", ") + folder;
  if (stock.leftOut > 0) line += "; " + Counted(stock.leftOut, "caption file") + " left out, see --help";
  std::puts(line.c_str());
  std::fflush(stdout);
}

int ServeFolders(const Options& options) {
  const Descriptor stop = EndSignals();
  auto handedOver = TakeHandedOver();
  const Descriptor listener = handedOver ? std::move(*handedOver) : ListenOnLoopback(options.port);
  FolderSource folders(options.folders);
  TellMissing(options.folders);
  TellStock(folders, options, AddressOf(listener));
  Server(folders).Serve(listener.Number(), stop.Number());
  return 0;
}

int Run(const Options& options) {
  if (options.help) {
    std::printf("%s\n%s", kUsage, kHelp);
    return 0;
  }
  if (options.version) {
    std::puts("ravelyn-gateway " RAVELYN_VERSION);
    return 0;
  }
  return ServeFolders(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(ParseOptions(std::span<const char* const>(argv + 1, argv + argc)));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "ravelyn-gateway: %s\n%s\n", error.what(), kUsage);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ravelyn-gateway: %s\n", error.what());
    return 1;
  }
}
