// The program yt-dlp: its path, its arguments, its input and the file that it writes.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

struct YtDlp {
  std::string program;  // an absolute path; "" if there is none
  std::string version;  // "2023.03.04"; "" if unknown
};

// For the paths given to yt-dlp, which runs in a folder of its own. "" stays "".
std::string Absolute(const std::string& path);

// The program that the user named; if none (""), ~/.local/bin/yt-dlp, else the first in PATH. An absolute
// path; "" if there is none. A name with a "/" is a path, whether or not the program exists.
std::string PathOfYtDlp(const std::string& named);

// Also runs it for its version, until patience is over or the descriptor `stop` is readable; -1 for none.
YtDlp FindYtDlp(const std::string& named, std::chrono::milliseconds patience = std::chrono::seconds(10),
                int stop = -1);

// Both commands take the user's file of options as config, "" for none.
//
// Prints the tracks of a video as one line of JSON. Requires: IsSiteCode(code).
std::vector<std::string> ListCommand(const std::string& program, const std::string& config,
                                     std::string_view code);

// Reads TextInput from standard input and writes the text into its folder, to the file kTextFile + format.
std::vector<std::string> TextCommand(const std::string& program, const std::string& config);
std::string TextInput(std::string_view entry);  // entry: a track in one format, JSON as it was listed
inline constexpr std::string_view kTextFile = "c.c.";

// The formats to fetch, in order of preference.
inline constexpr std::string_view kTextFormats[] = {"srv1", "srv3", "json3", "vtt", "srt"};

// Eleven of 0-9 A-Z a-z _ -
bool IsSiteCode(std::string_view code);

}  // namespace gateway
