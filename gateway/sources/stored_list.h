// A video's list as it is stored in a file: JSON with the members of TrackList and Track, except the cause.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

std::string StoredList(const TrackList& list);

// nullopt if it is not such a list, or has no tracks.
std::optional<TrackList> ReadStoredList(std::string_view json);

}  // namespace gateway
