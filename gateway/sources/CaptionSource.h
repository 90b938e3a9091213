// The interface between the server and the sources of captions: the folders, the cache and the site.
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
  std::string language;    // the key to request its text: [0-9A-Za-z_-]{1,64}
  std::string name;        // in English, for the user, UTF-8, never empty: "English (automatic)"
  std::string ownName;     // in the language itself
  bool automatic = false;  // by speech recognition
};

// The tracks of a video. The cause says in one short English sentence (ASCII, at most 200 bytes) why there
// are none, or why some may be missing; "" if none is missing.
struct TrackList {
  std::vector<Track> tracks;  // each language once
  std::string cause;
};

// A document: bytes in the form that the program reads, or a file to be sent unchanged.
using Document = std::variant<std::string, CaptionFile>;

// A track's document, or nullopt and a cause that is not empty.
struct CaptionText {
  std::optional<Document> document;
  std::string cause;
  std::shared_ptr<void> place = nullptr;  // limits large documents in memory; kept as long as this one
};

// The client that asks. A source that waits for something gives up once the client closes its connection.
struct Requester {
  std::chrono::steady_clock::time_point arrival = std::chrono::steady_clock::now();
  int connection = -1;  // a descriptor, which stays its owner's; -1: never gives up
};

// Any number of threads may call it. No input makes a call throw; a call may take as long as the limits of
// its source allow.
class CaptionSource {
 public:
  virtual ~CaptionSource() = default;

  // code and language may be any bytes; invalid ones have no captions.
  virtual TrackList Tracks(std::string_view code, const Requester& requester) = 0;
  virtual CaptionText Text(std::string_view code, std::string_view language, const Requester& requester) = 0;
};

}  // namespace gateway
