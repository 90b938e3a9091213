#include "gateway/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "gateway/documents/convert.h"

namespace gateway {
namespace {

std::uint16_t PortOf(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc() || end != text.data() + text.size())
    throw UsageError("--port wants a number from 0 to 65535, not \"" + std::string(text) + "\"");
  return port;
}

struct Option {
  std::string_view name;
  std::string_view value;  // its value's name in --help; "" if it takes none
  std::string_view help;   // lines
  void (*take)(Options& options, std::string_view value);
};

constexpr std::array<Option, 11> kOptions{{
    {"--folder", "DIR",
     "serve the caption files in DIR, but not in its subfolders; may be given\n"
     "several times. If two folders hold the same video and language, the one\n"
     "named first wins. A missing folder counts as empty until it is made.",
     [](Options& options, std::string_view value) { options.folders.emplace_back(value); }},
    {"--as-is", "", "serve only .srv1 files, byte for byte, whatever they contain",
     [](Options& options, std::string_view) { options.asIs = true; }},
    {"--fetch", "",
     "ask the video site, through yt-dlp, for captions that no folder has. Without\n"
     "this option the gateway makes no connections and starts no programs.",
     [](Options& options, std::string_view) { options.fetch = true; }},
    {"--ytdlp", "PROGRAM", "the yt-dlp to use. Default: ~/.local/bin/yt-dlp, else the first in PATH",
     [](Options& options, std::string_view value) { options.ytdlp = value; }},
    {"--ytdlp-config", "FILE",
     "options for yt-dlp, such as --cookies or --proxy; its other files are not read",
     [](Options& options, std::string_view value) { options.ytdlpConfig = value; }},
    {"--cache", "DIR",
     "keep fetched texts in DIR. Default: ravelyn/captions in $XDG_CACHE_HOME, else\n"
     "in ~/.cache",
     [](Options& options, std::string_view value) { options.cache = value; }},
    {"--no-cache", "", "keep no fetched texts, and use none that were kept",
     [](Options& options, std::string_view) { options.keepsTexts = false; }},
    {"--port", "N", "listen at 127.0.0.1, port N; 0 takes any free one. Default: 17733",
     [](Options& options, std::string_view value) { options.port = PortOf(value); }},
    {"--stop-with-input", "", "end at the end of standard input",
     [](Options& options, std::string_view) { options.stopsWithInput = true; }},
    {"--help", "", "print this text", [](Options& options, std::string_view) { options.help = true; }},
    {"--version", "", "print the version",
     [](Options& options, std::string_view) { options.version = true; }},
}};

const Option* Find(std::string_view name) {
  const auto* found = std::find_if(kOptions.begin(), kOptions.end(),
                                   [=](const Option& option) { return option.name == name; });
  return found == kOptions.end() ? nullptr : found;
}

void Take(Options& options, const Option& option, std::string_view value) {
  if (value.empty()) throw UsageError(std::string(option.name) + " wants a value");
  option.take(options, value);
}

// The option, its value, and its text in a column of its own.
std::string HelpOn(const Option& option) {
  constexpr std::size_t kColumn = 24;
  std::string line = "  " + std::string(option.name);
  if (!option.value.empty()) line += " " + std::string(option.value);
  line.resize(std::max(line.size() + 1, kColumn), ' ');
  for (const char c : option.help) {
    line += c;
    if (c == '\n') line.append(kColumn, ' ');
  }
  return line + "\n";
}

constexpr const char* kAbove = R"(
Serves captions to Ravelyn, on this machine only: the caption files of folders and, on
demand, the captions of the video site.

Options:
)";

constexpr const char* kBelow = R"(
Caption files:
  A caption file is named  TITLE [CODE].LANG.EXT  or  [CODE].LANG.EXT , for example
      A walk round the harbour [hB7rV2kQx0w].pt-BR.srt
  CODE is the code in the video's link; LANG is a language code, also as yt-dlp writes it
  (en-orig, de-en); EXT is)";

constexpr const char* kBelowFormats = R"(,
  in upper or lower case. Of several files for one language, that with the EXT named first
  here wins. Files can be added, changed and removed at any time.
  Files with other names, links, anything but regular files, files that can't be read or
  contain no captions, and files of more than 64 MiB are not served.

Fetched captions:
  Texts are kept for 30 days, 256 MiB in all; the oldest are removed first.

Requests (GET and HEAD; one per connection):
  /timedtext?type=list&v=CODE          the list of the video's tracks; an unknown code
                                       gives a list without tracks
  /api/timedtext?&v=CODE&lang=LANG     the captions; 404 without a body if there are none
  A code may arrive with a tail such as &t=30 or ?si=x, which is cut off.
  If there is nothing to serve, the header Ravelyn-Cause says why. Requests that a web page
  could have sent are refused with 403: those with a Host other than 127.0.0.1, localhost or
  [::1], an Origin, a Referer, or a Sec-Fetch-Site other than "none".

Limits:
  A request's head may have 16 KiB and take 10 seconds, its answer 60 seconds; 256
  connections are served at a time, others wait. If a folder has captions of a video, its
  list waits at most 5 seconds for the site.

Start and stop:
  At the start, one line names the address, the folders, their contents, and the yt-dlp in use.
  SIGTERM, SIGINT and SIGHUP end the gateway; answers under way are given up to 3 seconds.
  Started with a listening socket (LISTEN_FDS=1), it serves that socket, and --port has no effect.

Exit status:
  0  ended by a signal or the end of its input, or --help or --version
  1  can't listen at the address, or a system error later
  2  invalid options
)";

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::string_view name = argument.substr(0, argument.find('='));
    const Option* option = Find(name);
    const bool hasValue = name != argument;
    if (option == nullptr || (hasValue && option->value.empty()))
      throw UsageError("unknown option \"" + std::string(argument) + "\"");
    if (option->value.empty()) {
      option->take(options, "");
    } else if (hasValue) {
      Take(options, *option, argument.substr(name.size() + 1));
    } else {
      Take(options, *option, ++i < arguments.size() ? arguments[i] : "");
    }
  }
  if (options.folders.empty() && !options.fetch && !options.help && !options.version)
    throw UsageError("there is no --folder to serve, and no --fetch");
  return options;
}

const char* const kUsage = "Usage: ravelyn-gateway [--folder DIR ...] [--fetch] [OPTION ...], see --help";

std::string HelpText() {
  std::string text = std::string(kUsage) + "\n" + kAbove;
  for (const Option& option : kOptions) text += HelpOn(option);
  text += kBelow;
  for (const CaptionFormat& format : CaptionFormats()) text += " " + std::string(format.ending);
  return text + kBelowFormats;
}

}  // namespace gateway
