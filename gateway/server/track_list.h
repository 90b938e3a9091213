// The document that lists a video's tracks. Clients split it at fixed texts instead of parsing it, so the
// order of attributes, every blank and every quotation mark counts, and nothing is allowed between elements.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

// document = declaration "<transcript_list docid=" quoted ">" { track } "</transcript_list>"
// track    = "<track id=" quoted " name=" quoted " lang_code=" quoted " lang_original=" quoted
//            " lang_translated=" quoted [ " lang_default=" quoted ] "/>"
//
// UTF-8, and split at the same places whatever the names contain. Names are not escaped, "R&D", so the
// document is not XML in general. The default track comes first: "en", else a variant of it, else the first
// by English name. The others follow by English name. A `code` that can't be part of a caption file's name
// leaves docid empty.
std::string TrackListDocument(std::string_view code, std::vector<Track> tracks);

}  // namespace gateway
