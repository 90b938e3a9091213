#include "gateway/AllSources.h"

#include <chrono>
#include <filesystem>

#include "gateway/sources/log.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {
namespace {

constexpr std::chrono::seconds kVersionPatience{10};

std::string Counted(std::size_t count, const char* one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string Described(const YtDlp& found) {
  if (found.program.empty()) return "yt-dlp is not installed";
  const std::string version = found.version.empty() ? "which does not say its version" : found.version;
  return "fetches by " + found.program + ", " + version;
}

std::string Described(const std::string& folder) {
  std::error_code ignored;
  return std::filesystem::exists(folder, ignored) ? folder : folder + " (missing)";
}

std::string CacheFolderOf(const Options& options) {
  if (!options.keepsTexts) return "";
  std::string folder = options.cache.empty() ? UsualCacheFolder() : options.cache;
  if (folder.empty())
    Log("no fetched text is kept: neither --cache nor XDG_CACHE_HOME nor HOME names a folder");
  return folder;
}

}  // namespace

AllSources::AllSources(const Options& options, int stop)
    : folders_(options.folders, options.asIs ? FolderSource::Manner::AsIs : FolderSource::Manner::Convert),
      fetching_("fetches nothing") {
  if (!options.fetch) return;
  const YtDlp found = FindYtDlp(options.ytdlp, kVersionPatience, stop);
  fetching_ = Described(found);
  site_.emplace(SiteSettings{found.program, found.version, options.ytdlpConfig, "", options.ytdlp});
  CaptionSource* fetched = &*site_;
  if (const std::string folder = CacheFolderOf(options); !folder.empty())
    fetched = &cache_.emplace(*site_, folder);
  joined_.emplace(folders_, *fetched);
}

CaptionSource& AllSources::Whole() {
  if (joined_) return *joined_;
  return folders_;
}

std::string AllSources::Summary(const Options& options) const {
  const FolderSource::Stock stock = folders_.TakeStock();
  std::string line = Counted(stock.videos, "video") + " with " + Counted(stock.tracks, "track") + " from";
  for (const std::string& folder : options.folders)
    line += (&folder == &options.folders[0] ? " " : ", ") + Described(folder);
  if (options.folders.empty()) line += " no folder";
  if (stock.leftOut > 0) line += "; " + Counted(stock.leftOut, "caption file") + " left out, see --help";
  return line + "; " + fetching_;
}

}  // namespace gateway
