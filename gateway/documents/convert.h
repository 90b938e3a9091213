// Converts a caption file to the document that the program reads:
//
//   bytes -> encoding -> reader -> cues -> cleaning -> document
//
// Every step is linear in the file. The limits are 64 MiB for the file and for its text in UTF-8, 1.5 million
// cues, and 96 MiB for the document; a file that exceeds one is refused with a fault. A conversion takes at
// most 300 MiB of memory, the file's bytes included, and that only for a file made to reach it; a usual file
// takes about four times its size. Files of more than 1 MiB are converted one at a time.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace gateway {

class Cues;

// A kind of caption file. The table of formats is in order of preference for one language.
struct CaptionFormat {
  std::string_view ending;  // without the dot, in lower case: "srv1"
  // Adds the cues of a file's text (UTF-8 without NUL) in the file's order. Returns why they can't be read,
  // in a short English sentence, or "".
  std::string (*read)(std::string text, Cues& cues);
  bool isXml = false;  // may declare an encoding
};

std::span<const CaptionFormat> CaptionFormats();

// The format with this ending in any case; nullptr if there is none.
const CaptionFormat* FormatWithEnding(std::string_view ending);

// Ends the language code of an automatic track.
inline constexpr std::string_view kOriginal = "-orig";

// What is known of a track besides its bytes.
struct TrackFacts {
  std::string_view language;  // its code, "en-orig"
  bool automatic = false;     // also assumed if the language ends with kOriginal
};

struct Conversion {
  std::string document;  // in the form that the program reads; "" if the bytes are not captions
  std::string fault;     // then the reason, in a short English sentence: "this file is a web page"
};

// Any number of threads may call it.
Conversion ToDocument(std::string bytes, const CaptionFormat& format, const TrackFacts& facts);

}  // namespace gateway
