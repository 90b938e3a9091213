#include "gateway/AllSources.h"

#include <filesystem>

#include "gateway/sources/CacheSource.h"
#include "gateway/sources/FolderSource.h"
#include "gateway/sources/JoinedSource.h"
#include "gateway/sources/SiteSource.h"
#include "gateway/sources/log.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {
namespace {

std::string Counted(std::size_t count, const char* one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

constexpr Option kFolderOptions[] = {
    {"--folder", "DIR",
     "serve the caption files in DIR, but not in its subfolders; may be given\n"
     "several times. If two folders hold the same video and language, the one\n"
     "named first wins. A missing folder counts as empty until it is made."},
    {"--as-is", "", "serve only .srv1 files, byte for byte, whatever they contain"},
};

std::string Described(const std::string& folder) {
  std::error_code ignored;
  return std::filesystem::exists(folder, ignored) ? folder : folder + " (missing)";
}

// Also without --folder: the start line then counts no videos, and the site is joined with none.
std::string AddFolders(SourceParts& parts, const Options& options, int) {
  const auto manner = options.Has("--as-is") ? FolderSource::Manner::AsIs : FolderSource::Manner::Convert;
  const std::vector<std::string>& folders = options.Values("--folder");
  auto source = std::make_unique<FolderSource>(folders, manner);
  const FolderSource::Stock stock = source->TakeStock();
  parts.push_back(std::move(source));
  std::string line = Counted(stock.videos, "video") + " with " + Counted(stock.tracks, "track") + " from";
  for (const std::string& folder : folders) line += (&folder == &folders[0] ? " " : ", ") + Described(folder);
  if (folders.empty()) line += " no folder";
  if (stock.leftOut > 0) line += "; " + Counted(stock.leftOut, "caption file") + " left out, see --help";
  return line;
}

constexpr Option kSiteOptions[] = {
    {"--fetch", "",
     "ask the video site, through yt-dlp, for captions that no folder has. Without\n"
     "this option the gateway makes no connections and starts no programs."},
    {"--ytdlp", "PROGRAM", "the yt-dlp to use. Default: ~/.local/bin/yt-dlp, else the first in PATH"},
    {"--ytdlp-config", "FILE",
     "options for yt-dlp, such as --cookies or --proxy; its other files are not read"},
    {"--cache", "DIR",
     "keep fetched texts in DIR. Default: ravelyn/captions in $XDG_CACHE_HOME, else\n"
     "in ~/.cache"},
    {"--no-cache", "", "keep no fetched texts, and use none that were kept"},
};

std::string Described(const YtDlp& found) {
  if (found.program.empty()) return "yt-dlp is not installed";
  const std::string version = found.version.empty() ? "which does not say its version" : found.version;
  return "fetches by " + found.program + ", " + version;
}

std::string CacheFolderOf(const Options& options) {
  if (options.Has("--no-cache")) return "";
  std::string folder = options.Has("--cache") ? options.Value("--cache") : UsualCacheFolder();
  if (folder.empty())
    Log("no fetched text is kept: neither --cache nor XDG_CACHE_HOME nor HOME names a folder");
  return folder;
}

std::string AddSite(SourceParts& parts, const Options& options, int stop) {
  if (!options.Has("--fetch")) return "fetches nothing";
  const std::string named = options.Value("--ytdlp");
  const YtDlp found = FindYtDlp(named, std::chrono::seconds(10), stop);
  CaptionSource& before = *parts.back();
  parts.push_back(std::make_unique<SiteSource>(
      SiteSettings{found.program, found.version, options.Value("--ytdlp-config"), "", named}));
  if (const std::string folder = CacheFolderOf(options); !folder.empty())
    parts.push_back(std::make_unique<CacheSource>(*parts.back(), folder));
  parts.push_back(std::make_unique<JoinedSource>(before, *parts.back()));
  return Described(found);
}

constexpr SourceKind kKinds[] = {{kFolderOptions, AddFolders}, {kSiteOptions, AddSite}};

}  // namespace

std::span<const SourceKind> SourceKinds() { return kKinds; }

// Delegates, so that the destructor also runs if a kind throws.
AllSources::AllSources(const Options& options, int stop) : AllSources() {
  for (const SourceKind& kind : kKinds) {
    const std::string words = kind.add(parts_, options, stop);
    summary_ += (summary_.empty() || words.empty() ? "" : "; ") + words;
  }
}

}  // namespace gateway
