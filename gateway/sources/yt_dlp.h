// The program yt-dlp: where it is, how it is called, and which file it writes.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

struct YtDlp {
  std::string program;  // an absolute path; "" if there is none
  std::string version;  // "2023.03.04"; "" if it said none in time
};

// The same path from the root, since each yt-dlp runs in a folder of its own; "" stays "".
std::string Absolute(const std::string& path);

// The program that the user named, else ~/.local/bin/yt-dlp, else the first in PATH: an absolute path, "" for
// none. A name with a "/" is taken as it is, whether or not there is such a program.
std::string PathOfYtDlp(const std::string& named);

// The same, run once for its version, for no longer than patience, and until stop can be read; -1 for none.
YtDlp FindYtDlp(const std::string& named, std::chrono::milliseconds patience = std::chrono::seconds(10),
                int stop = -1);

// Both take the user's file of options, "" for none.
//
// Prints the tracks of a video as one line of JSON. Requires: IsSiteCode(code).
std::vector<std::string> ListCommand(const std::string& program, const std::string& config,
                                     std::string_view code);

// Reads TextInput from standard input and writes the text into its folder as kTextFile and the format's
// ending.
std::vector<std::string> TextCommand(const std::string& program, const std::string& config);
std::string TextInput(std::string_view entry);  // entry: one track in one format, JSON as it was listed
inline constexpr std::string_view kTextFile = "c.c.";

// The formats that are taken, the first that a track has.
inline constexpr std::string_view kTextFormats[] = {"srv1", "srv3", "json3", "vtt", "srt"};

// Eleven of 0-9 A-Z a-z _ -: no other code is one of the site's.
bool IsSiteCode(std::string_view code);

}  // namespace gateway
