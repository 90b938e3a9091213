#include "gateway/options.h"

#include <algorithm>
#include <charconv>

#include "gateway/AllSources.h"
#include "gateway/documents/convert.h"

namespace gateway {
namespace {

// The options of no kind of source.
constexpr Option kGeneralOptions[] = {
    {"--port", "N", "listen at 127.0.0.1, port N; 0 takes any free one. Default: 17733"},
    {"--stop-with-input", "", "end at the end of standard input"},
    {"--help", "", "print this text"},
    {"--version", "", "print the version"},
};

// In the order of --help.
std::vector<Option> AllOptions() {
  std::vector<Option> all;
  for (const SourceKind& kind : SourceKinds())
    all.insert(all.end(), kind.options.begin(), kind.options.end());
  all.insert(all.end(), std::begin(kGeneralOptions), std::end(kGeneralOptions));
  return all;
}

// Throws UsageError if no kind of source is selected.
void RequireSource(const Options& options) {
  std::string complaint;
  for (const SourceKind& kind : SourceKinds()) {
    const std::string name(kind.options.front().name);
    if (options.Has(name)) return;
    complaint += complaint.empty() ? "there is no " + name + " to serve" : ", and no " + name;
  }
  throw UsageError(complaint);
}

// The option, its value, and its text in a column of its own.
std::string HelpOn(const Option& option) {
  constexpr std::size_t kColumn = 24;
  std::string line = "  " + std::string(option.name) + " " + std::string(option.value);
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

Options::Options(std::span<const char* const> arguments) {
  const std::vector<Option> all = AllOptions();
  for (const Option& option : all) given_[option.name];
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string argument = arguments[i], name = argument.substr(0, argument.find('='));
    const auto option = std::ranges::find(all, name, &Option::name);
    const bool hasValue = name != argument, wantsValue = option != all.end() && !option->value.empty();
    if (option == all.end() || (hasValue && !wantsValue))
      throw UsageError("unknown option \"" + argument + "\"");
    std::string value = hasValue ? argument.substr(name.size() + 1) : "";
    if (wantsValue && !hasValue && ++i < arguments.size()) value = arguments[i];
    if (wantsValue && value.empty()) throw UsageError(name + " wants a value");
    given_[option->name].push_back(std::move(value));
    Port();  // throws if it is invalid
  }
  if (!Has("--help") && !Has("--version")) RequireSource(*this);
}

std::uint16_t Options::Port() const {
  const std::string text = Value("--port");
  std::uint16_t port = kDefaultPort;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size()))
    throw UsageError("--port wants a number from 0 to 65535, not \"" + text + "\"");
  return port;
}

std::string HelpText() {
  std::string text = std::string(kUsage) + "\n" + kAbove;
  for (const Option& option : AllOptions()) text += HelpOn(option);
  text += kBelow;
  for (const CaptionFormat& format : CaptionFormats()) text += " " + std::string(format.ending);
  return text + kBelowFormats;
}

}  // namespace gateway
