#include "desktop/preferences_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace {

std::string absoluteOf(const char* variable) {
  const char* value = std::getenv(variable);
  return value && value[0] == '/' ? value : "";
}

std::string homeFolder() {
  const std::string home = absoluteOf("HOME");
  if (!home.empty()) return home;
  const passwd* entry = ::getpwuid(::getuid());
  return entry && entry->pw_dir && entry->pw_dir[0] == '/' ? entry->pw_dir : "";
}

std::string wantedFolder() {
  const std::string configHome = absoluteOf("XDG_CONFIG_HOME");
  if (!configHome.empty()) return configHome;
  const std::string home = homeFolder();
  return home.empty() ? "" : home + "/.config";
}

}  // namespace

std::string preferencesFolder() {
  const std::string folder = wantedFolder();
  if (folder.empty()) return "";
  std::error_code failed;
  const std::filesystem::path path(folder);
  if (std::filesystem::is_directory(path, failed)) return folder;
  std::filesystem::create_directories(path.parent_path(), failed);
  return ::mkdir(folder.c_str(), S_IRWXU) == 0 ? folder : "";
}
