// ravelyn-session: drives the program from standard input, without a screen.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>

#include "Session.h"

namespace {

constexpr char kUsage[] =
    "Usage: ravelyn-session [OPTION]...\n"
    "Drives Ravelyn without a screen: reads one action a line from standard input and\n"
    "prints one JSON object a line.\n\n"
    "  --track-list HOST[:PORT]   where the caption tracks are asked for\n"
    "  --timed-text HOST[:PORT]   where the captions are fetched\n"
    "  --prefs DIR                folder of the preferences, made if missing (default: a temporary one)\n"
    "  --probe-address HOST       host that is pinged on opening (default: 127.0.0.1)\n"
    "  --help, --version\n\n"
    "Actions: open, quit, type CONTROL TEXT, click [WINDOW.]CONTROL, select ROW...,\n"
    "save PATH, cancel, cell ROW COLUMN, menu ITEM, activate WINDOW, close WINDOW,\n"
    "resize WINDOW W H, dump. Exit status: 0, 2 if an action could not be done or an\n"
    "option is wrong.\n";

struct Options {
  Endpoints endpoints;
  std::optional<std::string> prefs;
};

// The probe's address stands in a shell command, so it may hold nothing that a shell would read.
bool IsHost(const std::string& text) {
  constexpr char kAllowed[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.:-";
  return !text.empty() && text[0] != '-' && text.find_first_not_of(kAllowed) == std::string::npos;
}

// True if a folder stands at path; one that is missing is made in a folder that exists.
bool IsFolder(const std::string& path) {
  std::error_code ignored;
  std::filesystem::create_directory(path, ignored);
  return std::filesystem::is_directory(path, ignored);
}

bool TakeOption(Options& options, const std::string& name, const std::string& value) {
  const bool isHost = IsHost(value);
  if (name == "--track-list" && isHost) return options.endpoints.TrackListEndpoint = value, true;
  if (name == "--timed-text" && isHost) return options.endpoints.TimedTextEndpoint = value, true;
  if (name == "--probe-address" && isHost) return options.endpoints.ProbeAddress = value, true;
  if (name == "--prefs" && IsFolder(value)) return options.prefs = value, true;
  return false;
}

// A folder of its own for one run, gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "ravelyn-session-XXXXXX").string();
    if (::mkdtemp(path.data())) path_ = path;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

int main(int count, char** arguments) {
  Options options;
  options.endpoints.ProbeAddress = "127.0.0.1";
  for (int i = 1; i < count; i += 2) {
    const std::string name = arguments[i];
    if (name == "--help") return std::cout << kUsage, 0;
    if (name == "--version") return std::cout << "ravelyn-session " << kVersion << "\n", 0;
    if (i + 1 == count || !TakeOption(options, name, arguments[i + 1])) {
      std::cerr << "ravelyn-session: wrong option or value: " << name << "\n" << kUsage;
      return 2;
    }
  }
  const TemporaryFolder folder;
  Session session(options.endpoints, options.prefs.value_or(folder.Path()), std::cout);
  session.Run(std::cin);
  return session.HadErrors() ? 2 : 0;
}
