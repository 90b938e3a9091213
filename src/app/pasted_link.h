// Finds the link in a text that the user pastes, drops or passes on the command line.
#pragma once

#include <string>

struct Endpoints;

// The watch page of the first video that text names, in the one form that Search reads; text itself if it
// names none. Accepted in any case, with anything after the code:
//
//   link = [ scheme "//" ] [ "www." | "m." | "music." ] host path
//        | code                                          alone, but for white space around it
//   host = that of the watch page, also with "-nocookie" added to its name | that of short links
//   path = "/watch" [ "/" ] "?" any parameters "v=" code
//        | "/" ( "shorts" | "live" | "embed" | "v" | "e" ) "/" code
//        | "/" code                                      of the host of short links
//   code = 11 of [0-9A-Za-z_-]
//
// A link may be part of a sentence, but its host not part of a longer name.
std::string PastedLink(const std::string& text, const Endpoints& endpoints);
