// The one road from a caption file to the document that the program reads:
//
//   bytes -> encoding -> reader -> cues -> cleaning -> document
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace gateway {

// A kind of caption file. The table of them stands in the order of preference for one language.
struct CaptionFormat {
  std::string_view ending;  // without the dot, in small letters: "srv1"
};

std::span<const CaptionFormat> CaptionFormats();

// The format with this ending, whatever the case of its letters; nullptr if there is none.
const CaptionFormat* FormatWithEnding(std::string_view ending);

// What is known of a track beside its bytes.
struct TrackFacts {
  std::string_view language;  // its code, "en-orig"
  bool automatic = false;     // the site says so, or its name does
};

struct Conversion {
  std::string document;  // in the form that the program reads; "" if the bytes are no captions
  std::string fault;     // then why not, in a short English sentence: "this file is a web page"
};

Conversion ToDocument(std::string bytes, const CaptionFormat& format, const TrackFacts& facts);

}  // namespace gateway
