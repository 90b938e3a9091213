// The kinds of sources, and those of them that the options select, combined into one.
#pragma once

#include "gateway/options.h"
#include "gateway/sources/CaptionSource.h"

namespace gateway {

// The last one combines them all. Each may use those before it, and is destroyed before them.
using SourceParts = std::vector<std::unique_ptr<CaptionSource>>;

struct SourceKind {
  std::span<const Option> options;  // the first one selects the kind

  // Appends the sources of this kind, if it is selected. Returns its words for the start line, "" for none:
  // "1 video with 2 tracks from DIR", "fetches nothing". Stops waiting once the descriptor `stop` is
  // readable; -1 for none. Requires: the kinds before it in SourceKinds() have been added.
  std::string (*add)(SourceParts& parts, const Options& options, int stop);
};

// In the order of --help, the start line and SourceParts.
std::span<const SourceKind> SourceKinds();

class AllSources {
 public:
  // Adds each kind. With --fetch, finds yt-dlp and asks for its version, which takes a few tenths of a
  // second. Requires: what SiteSource requires.
  explicit AllSources(const Options& options, int stop = -1);
  ~AllSources() {
    while (!parts_.empty()) parts_.pop_back();
  }

  CaptionSource& Whole() { return *parts_.back(); }

  // The words of all kinds: "1 video with 2 tracks from DIR; fetches nothing".
  const std::string& Summary() const { return summary_; }

 private:
  AllSources() = default;

  SourceParts parts_;
  std::string summary_;
};

}  // namespace gateway
