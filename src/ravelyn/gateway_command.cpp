// Finds the gateway, and forms its command line.

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "ravelyn/OwnGateway.h"
#include "runtime/Text.h"

namespace {

namespace fs = std::filesystem;
constexpr char kProgram[] = "ravelyn-gateway";
constexpr char kUsersCaptions[] = "/.local/share/ravelyn/captions";  // below the home folder

bool IsProgram(const fs::path& path) {
  std::error_code failed;
  return fs::is_regular_file(path, failed) && ::access(path.c_str(), X_OK) == 0;
}

// Relative paths are skipped: they would depend on the current folder.
fs::path FindProgram() {
  std::error_code failed;
  fs::path beside = fs::read_symlink("/proc/self/exe", failed).parent_path() / kProgram;
  if (IsProgram(beside)) return beside;
  const char* path = std::getenv("PATH");
  for (const std::string& folder : Split(path ? path : "", ":")) {
    fs::path found = fs::path(folder) / kProgram;
    if (found.is_absolute() && IsProgram(found)) return found;
  }
  return {};
}

// "" if there is none.
std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/') return home;
  const passwd* entry = ::getpwuid(::getuid());
  return entry ? entry->pw_dir : "";
}

}  // namespace

OwnGateway::CommandLine GatewayCommand() {
  const fs::path program = FindProgram();
  if (program.empty()) return {};
  const fs::path package = program.parent_path().parent_path() / "share/ravelyn/captions";
  return {program.string(), "--fetch",       "--stop-with-input", "--folder", HomeFolder() + kUsersCaptions,
          "--folder",       package.string()};
}
