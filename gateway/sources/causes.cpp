#include "gateway/sources/causes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include "gateway/sources/version.h"

namespace gateway {
namespace {

enum class Where { Anywhere, Errors };

struct Row {
  std::string_view patterns;  // literal, with "|" between; any of them
  Where where;
  Effect effect;
  std::string_view sentence;
};

constexpr Row kTokens = {"PO token was not provided|require a PO Token", Where::Anywhere, Effect::Outdated,
                         "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin."};

constexpr std::array<Row, 18> kRows{{
    {"not a bot|likely being blocked|captcha challenge", Where::Anywhere, Effect::Pause,
     "The site wants a sign-in from this network; wait, or give yt-dlp cookies."},
    {"rate-limited by|try again later|HTTP Error 429|Too Many Requests", Where::Anywhere, Effect::Pause,
     "Too many requests to the site; try again in an hour."},
    {"Private video", Where::Anywhere, Effect::Verdict, "This video is private."},
    {"confirm your age|age-restricted", Where::Anywhere, Effect::Verdict,
     "This video is age-restricted and needs a sign-in."},
    {"members-only|Join this channel", Where::Anywhere, Effect::Verdict, "This video is for members only."},
    {"available in your country|geo restriction", Where::Anywhere, Effect::Verdict,
     "This video is not available in this country."},
    {"will begin in|Premieres in", Where::Anywhere, Effect::Verdict, "This video has not begun."},
    kTokens,
    {"Video unavailable|video is not available|has been removed|terminated", Where::Anywhere, Effect::Verdict,
     "This video is unavailable or removed."},
    {"name resolution|Name or service not known|Connection refused|unreachable|timed out|CERTIFICATE_VERIFY",
     Where::Anywhere, Effect::None, "No network: yt-dlp has no connection to the site."},
    {"Remote end closed|Connection reset|Connection aborted|Connection broken|bytes, expected|bytes read",
     Where::Anywhere, Effect::None, "The connection to the site broke off."},
    {"Did not get any data blocks", Where::Anywhere, Effect::Outdated, "The site sent empty captions."},
    {"HTTP Error 403|HTTP Error 404|HTTP Error 410", Where::Anywhere, Effect::Relist,
     "The site refused the request."},
    {"HTTP Error 5", Where::Anywhere, Effect::None, "The site is in trouble; try again later."},
    {"File too large", Where::Anywhere, Effect::None, "The captions are too large."},
    {"No space left", Where::Anywhere, Effect::None, "The disk is full: yt-dlp can't keep the captions."},
    {"xtraction failed|Incomplete data received|xtract any player|nable to extract|Confirm you are on the "
     "latest version",
     Where::Errors, Effect::Outdated, "yt-dlp doesn't understand the site; update it."},
    {"no such option|unrecognized arguments", Where::Errors, Effect::Outdated,
     "This yt-dlp doesn't know the options that it needs; update it."},
}};

bool HasOneOf(std::string_view line, std::string_view patterns) {
  while (!patterns.empty()) {
    const std::size_t end = std::min(patterns.find('|'), patterns.size());
    if (line.find(patterns.substr(0, end)) != std::string_view::npos) return true;
    patterns.remove_prefix(std::min(end + 1, patterns.size()));
  }
  return false;
}

bool IsError(std::string_view line) {
  return line.starts_with("ERROR:") || line.find(": error: ") != std::string_view::npos;
}
bool IsWarning(std::string_view line) { return line.starts_with("WARNING:"); }

std::vector<std::string> LinesOf(std::string_view messages, bool (*isWanted)(std::string_view)) {
  std::string plain(messages);
  std::erase(plain, '\r');  // yt-dlp rewrites lines of a terminal that it doesn't have
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < plain.size();) {
    const std::size_t end = std::min(plain.find('\n', at), plain.size());
    const std::string_view line = std::string_view(plain).substr(at, end - at);
    if (isWanted(line)) lines.emplace_back(line);
    at = end + 1;
  }
  return lines;
}

Cause FirstIn(const std::vector<std::string>& lines, Where where) {
  for (const Row& row : kRows) {
    if (row.where == Where::Errors && where != Where::Errors) continue;
    for (const std::string& line : lines) {
      if (HasOneOf(line, row.patterns)) return {std::string(row.sentence), row.effect};
    }
  }
  return {};
}

}  // namespace

Cause CauseIn(std::string_view messages) {
  Cause cause = FirstIn(LinesOf(messages, IsError), Where::Errors);
  return cause.sentence.empty() ? FirstIn(LinesOf(messages, IsWarning), Where::Anywhere) : cause;
}

Cause GapIn(std::string_view messages) {
  if (!HasOneOf(messages, kTokens.patterns)) return {};
  return {std::string(kTokens.sentence), kTokens.effect};
}

Cause CauseOf(const ChildEnd& end) {
  switch (end.how) {
    case ChildEnd::How::TooLate:
      return {"The site took too long."};
    case ChildEnd::How::GivenUp:
      return {"Nobody waits for the answer any more."};
    case ChildEnd::How::TooMuch:
      return {"yt-dlp said more than it may."};
    case ChildEnd::How::Crashed:
      return {"yt-dlp crashed.", Effect::Outdated};
    case ChildEnd::How::NotStarted:
      return {end.code == ENOENT || end.code == ENOTDIR ? "yt-dlp is not installed."
                                                        : "yt-dlp can't be started."};
    case ChildEnd::How::Exited:
      break;
  }
  return {"yt-dlp failed; the gateway's log has its words.", Effect::Outdated};
}

Cause InLightOf(std::string_view version, std::chrono::sys_days today, Cause cause) {
  const std::string doubt = cause.sentence.empty() ? "" : DoubtAbout(version, today);
  if (doubt.empty()) return cause;
  if (cause.effect == Effect::Outdated && IsTooOld(version)) return {doubt + ".", Effect::Outdated};
  cause.sentence.pop_back();
  cause.sentence += " (" + doubt + ").";
  // With a yt-dlp that is too old, a video without captions proves nothing.
  if (cause.effect == Effect::Silent && IsTooOld(version)) cause.effect = Effect::Outdated;
  return cause;
}

std::string WordsWorthKeeping(std::string_view messages) {
  std::vector<std::string> lines = LinesOf(messages, IsError);
  if (lines.empty()) lines = LinesOf(messages, IsWarning);
  if (lines.empty()) {
    lines = LinesOf(messages, [](std::string_view line) { return !line.empty(); });
    if (lines.size() > 1) lines.erase(lines.begin(), lines.end() - 1);
  }
  std::string words;
  for (const std::string& line : lines) words += (words.empty() ? "" : " / ") + line;
  return words;
}

}  // namespace gateway
