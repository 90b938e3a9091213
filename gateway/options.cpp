#include "gateway/options.h"

#include <charconv>
#include <string_view>

namespace gateway {
namespace {

std::uint16_t PortOf(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc() || end != text.data() + text.size())
    throw UsageError("--port wants a number from 0 to 65535, not \"" + std::string(text) + "\"");
  return port;
}

void Take(Options& options, std::string_view name, std::string_view value) {
  if (name == "--port") {
    options.port = PortOf(value);
  } else if (value.empty()) {
    throw UsageError("--folder wants the path of a folder");
  } else {
    options.folders.emplace_back(value);
  }
}

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::string_view name = argument.substr(0, argument.find('='));
    if (argument == "--help") {
      options.help = true;
    } else if (argument == "--version") {
      options.version = true;
    } else if (name != "--folder" && name != "--port") {
      throw UsageError("unknown option \"" + std::string(argument) + "\"");
    } else if (name != argument) {
      Take(options, name, argument.substr(name.size() + 1));
    } else if (++i < arguments.size()) {
      Take(options, name, arguments[i]);
    } else {
      throw UsageError(std::string(name) + " wants a value");
    }
  }
  if (options.folders.empty() && !options.help && !options.version)
    throw UsageError("there is no --folder to serve");
  return options;
}

const char* const kUsage = "Usage: ravelyn-gateway --folder DIR [--folder DIR ...] [--port N]";

const char* const kHelp = R"(
Serves the caption files of one or more folders to Ravelyn, on this machine only.

Options:
  --folder DIR  serve the caption files in DIR, subfolders left out; may be given several
                times. Where two folders hold the same video and language, the one named
                first wins. A folder that is missing counts as empty until it is made.
  --port N      listen at 127.0.0.1, port N; 0 takes any free one. Default: 17733
  --help        print this text
  --version     print the version

Caption files:
  A caption file is named  TITLE [CODE].LANG.srv1 , for example
      A walk round the harbour [hB7rV2kQx0w].pt-BR.srv1
  CODE is the code of the video, as it stands in its link; LANG is a language code. The
  file holds a timed-text document in UTF-8 and is served byte for byte. Files can be added,
  changed and removed at any time: the folders are read anew for each request.
  Left out are files with other names, links, anything but regular files, files that can't
  be read, and files of more than 64 MiB.

Requests (GET and HEAD; one to a connection):
  /timedtext?type=list&v=CODE          the list of the video's tracks; an unknown code
                                       gives a list without tracks
  /api/timedtext?&v=CODE&lang=LANG     the caption file; 404 without a body if there is none
  A code may arrive with a tail such as &t=30 or ?si=x, which is cut off.

Limits:
  A request's head may have 16 KiB and take 10 seconds, its answer 60 seconds; 256
  connections are served at a time, others wait.

Start and stop:
  On start one line tells the address, the folders and what they hold. SIGTERM and SIGINT
  end the gateway; answers under way are given up to 3 seconds. Started by systemd with a
  listening socket (LISTEN_FDS=1), it serves that socket, and --port has no effect.

Exit status:
  0  ended by a signal, or --help or --version
  1  can't listen at the address, or the system failed it later
  2  wrong options
)";

}  // namespace gateway
