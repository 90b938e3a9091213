#include "gateway/sources/yt_dlp.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "gateway/documents/ascii.h"
#include "gateway/sources/Child.h"
#include "gateway/sources/version.h"

namespace gateway {
namespace {

namespace fs = std::filesystem;

bool IsProgram(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string InPath(const std::string& name) {
  std::string folders = Variable("PATH");
  for (std::size_t end = 0; !folders.empty(); folders.erase(0, end)) {
    end = std::min(folders.find(':'), folders.size() - 1) + 1;
    const std::string folder = folders.substr(0, folders.find(':'));
    if (!folder.empty() && IsProgram(fs::path(folder) / name)) return fs::path(folder) / name;
  }
  return "";
}

std::string ProgramOf(const std::string& named) {
  if (named.find('/') != std::string::npos) return named;
  if (!named.empty()) return InPath(named);
  const fs::path ofTheUser = fs::path(Variable("HOME")) / ".local/bin/yt-dlp";
  return IsProgram(ofTheUser) ? ofTheUser.string() : InPath("yt-dlp");
}

std::string VersionOf(const std::string& program, const Patience& patience) {
  constexpr std::size_t kEnough = 4096;
  constexpr std::uint64_t kCodeFiles = 64u << 20;  // Python may store compiled modules
  Child child({program, "--ignore-config", "--version"}, "/", kCodeFiles);
  const ChildEnd end = child.Finish("", kEnough, kEnough, patience);
  const std::string line = end.output.substr(0, end.output.find('\n'));
  return end.how == ChildEnd::How::Exited && end.code == 0 && IsVersion(line) ? line : "";
}

// The common arguments. --config-locations comes after --ignore-config, which would otherwise disable it.
std::vector<std::string> CommonArguments(const std::string& program, const std::string& config) {
  std::vector<std::string> command = {program, "--ignore-config"};
  if (!config.empty()) command.insert(command.end(), {"--config-locations", config});
  command.insert(command.end(),
                 {"--no-update", "--no-progress", "--skip-download", "--ignore-no-formats-error",
                  "--write-subs", "--socket-timeout", "10", "--retries", "1"});
  return command;
}

}  // namespace

std::string Absolute(const std::string& path) {
  std::error_code ignored;
  return path.empty() ? "" : fs::absolute(path, ignored).string();
}

std::string PathOfYtDlp(const std::string& named) { return Absolute(ProgramOf(named)); }

YtDlp FindYtDlp(const std::string& named, std::chrono::milliseconds patience, int stop) {
  const std::string program = PathOfYtDlp(named);
  if (program.empty()) return {};
  return {program, VersionOf(program, {std::chrono::steady_clock::now() + patience, stop})};
}

// --write-subs writes nothing here, but makes yt-dlp report the tracks that it dropped. --write-auto-subs is
// left out: it would prepare each translation of each track.
std::vector<std::string> ListCommand(const std::string& program, const std::string& config,
                                     std::string_view code) {
  std::vector<std::string> command = CommonArguments(program, config);
  command.insert(command.end(), {"--no-playlist", "--extractor-retries", "1", "--print",
                                 "%(.{id,subtitles,automatic_captions})j", "--",
                                 "https://www.youtube.com/watch?v=" + std::string(code)});
  return command;
}

// Without --abort-on-error a refused text ends without a message. --paths overrides one in the user's file of
// options, which would put the text into another folder.
std::vector<std::string> TextCommand(const std::string& program, const std::string& config) {
  std::string formats;
  for (const std::string_view format : kTextFormats)
    formats += (formats.empty() ? "" : "/") + std::string(format);
  std::vector<std::string> command = CommonArguments(program, config);
  command.insert(command.end(),
                 {"--quiet", "--abort-on-error", "--sub-langs", "c", "--sub-format", formats, "--paths", ".",
                  "--paths", "subtitle:.", "-o", "c.%(ext)s", "--load-info-json", "-"});
  return command;
}

// Without the page's address: yt-dlp would list the video again by itself, even during a pause.
std::string TextInput(std::string_view entry) {
  return R"({"id":"c","title":"c","subtitles":{"c":[)" + std::string(entry) + "]}}";
}

bool IsSiteCode(std::string_view code) {
  const auto allowed = [](char c) { return IsLetter(c) || IsDigit(c) || c == '_' || c == '-'; };
  return code.size() == 11 && std::all_of(code.begin(), code.end(), allowed);
}

}  // namespace gateway
