// The one road from a caption file to the document that the program reads:
//
//   bytes -> encoding -> reader -> cues -> cleaning -> document
//
// Every step is linear in the file. A file, and its text in UTF-8, may have 64 MiB, its cues may number
// 1.5 million, and the document may have 96 MiB; more is a fault. A conversion takes at most 300 MiB at
// its peak, the file's bytes included, which only a file made for it reaches; a real file takes some four
// times its size. Files of more than 1 MiB are converted one after the other.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace gateway {

class Cues;

// A kind of caption file. The table of them stands in the order of preference for one language.
struct CaptionFormat {
  std::string_view ending;  // without the dot, in small letters: "srv1"
  // Adds the cues of a file's text, which is UTF-8 without NUL, in the file's order. What it gives is
  // why they can't be read, a short English sentence, or "".
  std::string (*read)(std::string text, Cues& cues);
  bool isXml = false;  // whose head may declare an encoding
};

std::span<const CaptionFormat> CaptionFormats();

// The format with this ending, whatever the case of its letters; nullptr if there is none.
const CaptionFormat* FormatWithEnding(std::string_view ending);

// The end of an automatic track's language code.
inline constexpr std::string_view kOriginal = "-orig";

// What is known of a track beside its bytes.
struct TrackFacts {
  std::string_view language;  // its code, "en-orig"
  bool automatic = false;     // the site says so, or its name does
};

struct Conversion {
  std::string document;  // in the form that the program reads; "" if the bytes are no captions
  std::string fault;     // then why not, in a short English sentence: "this file is a web page"
};

// Any number of threads may call it. A code that ends in "-orig" is an automatic track's.
Conversion ToDocument(std::string bytes, const CaptionFormat& format, const TrackFacts& facts);

}  // namespace gateway
