// What a track is called that is known by its code alone.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

struct TrackName {
  std::string english;     // for the user, UTF-8, never empty for a code that is not
  std::string own;         // of the language in itself, without what is said of the track
  bool automatic = false;  // made by a machine from the sound
};

// code = LANG                  "pt-BR"             Portuguese (Brazil)
//      | LANG "-orig"          "en-orig"           English (automatic)
//      | LANG "-" SOURCE       "de-en"             German (translated from English)
//                              "zh-Hant-en"        Chinese (Traditional, translated from English)
//      | LANG "-" ID           "en-nP7-2PuUl7o"    English (another version)
//      | LANG "-" SOURCE "-" ID                    as without the ID
//
// These are the codes that yt-dlp puts into the names of files. SOURCE is a language in small letters; the
// same letters as a region are in capitals there, and "pt-br", as a user may write it, differs from a
// translation by this: br is the region where most who speak Portuguese live. ID is the site's mark of a
// second track of one language, eleven letters, digits, - and _. A code of another form is its own name.
TrackName NameOfTrack(std::string_view code);

}  // namespace gateway
