// A video's list as it is kept in a file: JSON with the members of TrackList and Track, but for the cause.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

std::string StoredList(const TrackList& list);

// nullopt if it is no such list, or has no track.
std::optional<TrackList> ReadStoredList(std::string_view json);

}  // namespace gateway
