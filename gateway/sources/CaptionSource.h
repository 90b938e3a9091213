// Where captions come from: the one seam between the server and the folders, the cache and the site.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "gateway/sources/CaptionFile.h"

namespace gateway {

struct Track {
  std::string language;    // what its text is asked for by: [0-9A-Za-z_-]{1,64}
  std::string name;        // in English, for the user, UTF-8, never empty: "English (automatic)"
  std::string ownName;     // the same in the language itself
  bool automatic = false;  // made by a machine from the sound
};

// What a source has of a video. A cause says in one short English sentence (ASCII, at most 200 bytes) why
// there are no tracks, or why some may be missing; "" if there is nothing to say.
struct TrackList {
  std::vector<Track> tracks;  // each language once
  std::string cause;
};

// One document: bytes in the form that the program reads, or a file that is served as it stands.
using Document = std::variant<std::string, CaptionFile>;

// One track's document, or none and the cause, never empty then.
struct CaptionText {
  std::optional<Document> document;
  std::string cause;
  std::shared_ptr<void> place = nullptr;  // one of few for large documents, held while this one is in memory
};

// Who asks: since when, and over which connection. A source that waits for something gives up once the
// connection is closed by its client.
struct Asker {
  std::chrono::steady_clock::time_point arrival = std::chrono::steady_clock::now();
  int connection = -1;  // a descriptor, its owner's; -1 for one who always waits
};

// Any number of threads may ask at the same time. No call throws for what comes from outside; a call may
// take as long as its source's limits say.
class CaptionSource {
 public:
  virtual ~CaptionSource() = default;

  // code and language may be any bytes at all: what can't be one is simply not there.
  virtual TrackList Tracks(std::string_view code, const Asker& asker) = 0;
  virtual CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) = 0;
};

}  // namespace gateway
