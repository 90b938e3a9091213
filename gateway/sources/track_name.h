// The name of a track of which only the code is known.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

struct TrackName {
  std::string english;     // for the user, UTF-8; not empty unless the code is
  std::string own;         // of the language in itself, without notes on the track
  bool automatic = false;  // by speech recognition
};

// code = LANG                  "pt-BR"             Portuguese (Brazil)
//      | LANG "-orig"          "en-orig"           English (automatic)
//      | LANG "-" SOURCE       "de-en"             German (translated from English)
//                              "zh-Hant-en"        Chinese (Traditional, translated from English)
//      | LANG "-" ID           "en-nP7-2PuUl7o"    English (another version)
//      | LANG "-" SOURCE "-" ID                    as without the ID
//
// These are the codes that yt-dlp writes into file names. SOURCE is a language in lower case, whereas yt-dlp
// writes regions in upper case. A user may write "pt-br"; it is not a translation, because BR is the home
// region of Portuguese. ID is the site's key of a second track in the same language, eleven letters, digits,
// - and _. A code of another form is its own name.
TrackName NameOfTrack(std::string_view code);

}  // namespace gateway
