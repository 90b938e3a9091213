// The document that lists a video's tracks. Its readers cut it by fixed texts and don't parse it, so the
// order of attributes, every blank and every quote mark counts, and nothing stands between two elements.
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
// UTF-8, cut in the same places whatever the names hold: a name is written as the user is to read it, "R&D",
// so the document is no XML in general. English is the default track and comes first: "en",
// else a variant; without either, the first by name. The others follow by their English names. A `code` that
// no file could bear leaves docid empty.
std::string TrackListDocument(std::string_view code, std::vector<Track> tracks);

}  // namespace gateway
