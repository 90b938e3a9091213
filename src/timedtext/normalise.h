// The replacements that turn a timed-text document into fields with separators between them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Separates two fields of a normalised document; also follows the last text.
inline constexpr std::string_view kSeparator = " ||| ";

// Applies the table of replacements, each to the whole document in its turn. This is what normalising means.
std::string NormaliseStepByStep(std::string document);

// A normalised document, and where its fields end: each before its separator, the last one with the document.
struct TimedTextFields {
  std::string document;
  std::vector<std::uint32_t> ends;
};

// The document of NormaliseStepByStep, byte for byte, split at kSeparator. std::length_error for a result of
// more than 4 GiB.
TimedTextFields NormaliseTimedText(std::string document);
