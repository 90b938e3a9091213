#include "gateway/sources/causes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>
#include <vector>

#include "gateway/sources/version.h"

namespace gateway {
namespace {

// A clear line names its cause, in an error or a warning. A vague line counts only in an error, and only if
// no warning is clear: newer releases warn of the site's refusals and then end with "Failed to extract any
// player response".
enum class Line { Clear, Vague };

struct Row {
  std::string_view patterns;  // alternatives, literal, separated by "|"
  Line line;
  Effect effect;
  std::string_view sentence;
};

constexpr Row kTokens = {"PO token was not provided|require a PO Token", Line::Clear, Effect::Outdated,
                         "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin."};

constexpr std::array<Row, 21> kRows{{
    {"not a bot|likely being blocked|captcha challenge", Line::Clear, Effect::Pause,
     "The site wants a sign-in from this network; wait, or give yt-dlp cookies."},
    {"rate-limited by|try again later|HTTP Error 429|Too Many Requests", Line::Clear, Effect::Pause,
     "Too many requests to the site; try again in an hour."},
    {"Private video", Line::Clear, Effect::Verdict, "This video is private."},
    {"confirm your age|age-restricted", Line::Clear, Effect::Verdict,
     "This video is age-restricted and needs a sign-in."},
    {"members-only|Join this channel", Line::Clear, Effect::Verdict, "This video is for members only."},
    {"available in your country|geo restriction", Line::Clear, Effect::Verdict,
     "This video is not available in this country."},
    {"will begin in|Premieres in", Line::Clear, Effect::Verdict, "This video has not begun."},
    kTokens,
    {"Video unavailable|video is not available|has been removed|terminated", Line::Clear, Effect::Unavailable,
     "This video is unavailable or removed."},
    {"name resolution|Name or service not known|Connection refused|unreachable|Connection timed out|connect timeout",
     Line::Clear, Effect::None, "No network: yt-dlp has no connection to the site."},
    {"CERTIFICATE_VERIFY", Line::Clear, Effect::None,
     "yt-dlp doesn't trust the connection to the site: its certificate can't be verified."},
    // A release of 2023 reports a missing file if nothing of a text arrived.
    {"timed out|No such file or directory: './c.c.", Line::Clear, Effect::None, "The site took too long."},
    {"config location", Line::Clear, Effect::None, "yt-dlp can't read its file of options (--ytdlp-config)."},
    {"Remote end closed|Connection reset|Connection aborted|Connection broken|bytes, expected|bytes read",
     Line::Clear, Effect::None, "The connection to the site broke off."},
    {"Did not get any data blocks", Line::Clear, Effect::Outdated, "The site sent empty captions."},
    {"HTTP Error 403|HTTP Error 404|HTTP Error 410", Line::Clear, Effect::Relist,
     "The site refused the request."},
    {"HTTP Error 5", Line::Clear, Effect::None, "The site is in trouble; try again later."},
    {"File too large", Line::Clear, Effect::None, "The captions are too large."},
    {"No space left", Line::Clear, Effect::None, "The disk is full: yt-dlp can't keep the captions."},
    {"xtraction failed|Incomplete data received|xtract any player|nable to extract|Confirm you are on the latest version",
     Line::Vague, Effect::Outdated, "yt-dlp doesn't understand the site; update it."},
    {"no such option|unrecognized arguments", Line::Vague, Effect::Outdated,
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
  std::erase(plain, '\r');  // yt-dlp rewrites lines as if on a terminal
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < plain.size();) {
    const std::size_t end = std::min(plain.find('\n', at), plain.size());
    const std::string_view line = std::string_view(plain).substr(at, end - at);
    if (isWanted(line)) lines.emplace_back(line);
    at = end + 1;
  }
  return lines;
}

Cause FirstIn(const std::vector<std::string>& lines, Line wanted) {
  for (const Row& row : kRows) {
    if (row.line != wanted) continue;
    for (const std::string& line : lines) {
      if (HasOneOf(line, row.patterns)) return {std::string(row.sentence), row.effect};
    }
  }
  return {};
}

}  // namespace

Cause CauseIn(std::string_view messages) {
  const std::vector<std::string> errors = LinesOf(messages, IsError);
  Cause cause = FirstIn(errors, Line::Clear);
  if (cause.sentence.empty()) cause = FirstIn(LinesOf(messages, IsWarning), Line::Clear);
  return cause.sentence.empty() ? FirstIn(errors, Line::Vague) : cause;
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
      return {"The gateway gave up before the site had answered."};
    case ChildEnd::How::TooMuch:
      return {"The output of yt-dlp is too long."};
    case ChildEnd::How::Crashed:
      return {"yt-dlp crashed.", Effect::Outdated};
    case ChildEnd::How::NotStarted:
      return {end.code == ENOENT || end.code == ENOTDIR ? "yt-dlp is not installed."
                                                        : "yt-dlp can't be started."};
    case ChildEnd::How::Exited:
      break;
  }
  return {"yt-dlp failed; the gateway's log has its messages.", Effect::Outdated};
}

Cause WithDoubtAbout(std::string_view version, std::chrono::sys_days today, Cause cause) {
  const bool isSure = cause.effect == Effect::Verdict || cause.effect == Effect::Pause;
  const std::string doubt = isSure || cause.sentence.empty() ? "" : DoubtAbout(version, today);
  if (doubt.empty()) return cause;
  if (cause.effect == Effect::Outdated && IsTooOld(version)) return {doubt + ".", Effect::Outdated};
  cause.sentence.pop_back();
  cause.sentence += " (" + doubt + ").";
  // A yt-dlp that is too old may miss captions.
  if (cause.effect == Effect::NoCaptions && IsTooOld(version)) cause.effect = Effect::Outdated;
  return cause;
}

std::string LinesToLog(std::string_view messages) {
  std::vector<std::string> lines = LinesOf(messages, IsError);
  for (std::string& warning : LinesOf(messages, IsWarning)) lines.push_back(std::move(warning));
  if (lines.empty()) {
    lines = LinesOf(messages, [](std::string_view line) { return !line.empty(); });
    if (lines.size() > 1) lines.erase(lines.begin(), lines.end() - 1);
  }
  std::string words;
  const std::string* before = nullptr;
  for (const std::string& line : lines) {
    if (!before || *before != line) words += (before ? " / " : "") + line;
    before = &line;
  }
  return words;
}

}  // namespace gateway
