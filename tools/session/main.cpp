// ravelyn-session: drives the program without a screen, from standard input.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>

#include "Session.h"

namespace {

constexpr char kUsage[] =
    "Usage: ravelyn-session [OPTION]...\n"
    "Drives Ravelyn without a screen: reads one action a line from standard input and\n"
    "prints one JSON object a line for what a user would notice.\n\n"
    "  --track-list HOST[:PORT]   server of the lists of caption tracks\n"
    "  --timed-text HOST[:PORT]   server of the captions\n"
    "  --prefs DIR                folder of the preferences, made if missing (default: a temporary one)\n"
    "  --probe-address HOST       host that is pinged at the start (default: 127.0.0.1)\n"
    "  --help, --version\n\n"
    "Actions: open, quit, type CONTROL TEXT, paste CONTROL TEXT,\n"
    "click [WINDOW.]CONTROL, select ROW..., save PATH, cancel, cell ROW COLUMN,\n"
    "menu ITEM, activate WINDOW, close WINDOW, resize WINDOW WIDTH HEIGHT, dump.\n\n"
    "Exit status: 0; 2 if an action can't be done, an option is wrong, or the output can't be written.\n";

struct Options {
  Endpoints endpoints;
  std::optional<std::string> prefs;
};

// The probe's address becomes part of a shell command, so only harmless characters are allowed.
bool IsHost(const std::string& text) {
  constexpr char kAllowed[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.:-";
  return !text.empty() && text[0] != '-' && text.find_first_not_of(kAllowed) == std::string::npos;
}

// Makes the folder if it is missing and its parent exists; true if path is a folder then.
bool EnsureFolder(const std::string& path) {
  std::error_code ignored;
  std::filesystem::create_directory(path, ignored);
  return std::filesystem::is_directory(path, ignored);
}

bool TakeOption(Options& options, const std::string& name, const std::string& value) {
  const bool isHost = IsHost(value);
  if (name == "--track-list" && isHost) return options.endpoints.TrackListEndpoint = value, true;
  if (name == "--timed-text" && isHost) return options.endpoints.TimedTextEndpoint = value, true;
  if (name == "--probe-address" && isHost) return options.endpoints.ProbeAddress = value, true;
  if (name == "--prefs" && EnsureFolder(value)) return options.prefs = value, true;
  return false;
}

// Exists as long as this object.
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

// The exit status: output that is lost counts as an error.
int Status(bool hadErrors) { return hadErrors || !std::cout.flush() ? 2 : 0; }

}  // namespace

int main(int count, char** arguments) {
  Options options;
  options.endpoints.ProbeAddress = "127.0.0.1";
  for (int i = 1; i < count; i += 2) {
    const std::string name = arguments[i];
    if (name == "--help") return std::cout << kUsage, Status(false);
    if (name == "--version") return std::cout << "ravelyn-session " << kVersion << "\n", Status(false);
    if (i + 1 == count || !TakeOption(options, name, arguments[i + 1])) {
      std::cerr << "ravelyn-session: wrong option or value: " << name << "\n" << kUsage;
      return 2;
    }
  }
  const TemporaryFolder folder;
  Session session(options.endpoints, options.prefs.value_or(folder.Path()), std::cout);
  session.Run(std::cin);
  return Status(session.HadErrors());
}
