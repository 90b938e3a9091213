#include "gateway/sources/SiteFetcher.h"

#include <filesystem>
#include <utility>

#include "gateway/documents/convert.h"
#include "gateway/sources/log.h"
#include "gateway/sources/version.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {
namespace {

using Clock = std::chrono::steady_clock;

SiteSettings WithAbsolutePaths(SiteSettings settings) {
  for (std::string* path : {&settings.program, &settings.config, &settings.scratch}) *path = Absolute(*path);
  return settings;
}

std::chrono::sys_days Today() {
  return std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
}

// With yt-dlp's own messages.
void LogFailure(const std::string& subject, const Cause& cause, const ChildEnd& end) {
  if (end.how == ChildEnd::How::GivenUp) return;
  Log("yt-dlp " + subject + ": " + cause.sentence + " " + LinesToLog(end.messages));
}

}  // namespace

SiteFetcher::SiteFetcher(SiteSettings settings, const SiteLimits& limits)
    : settings_(WithAbsolutePaths(std::move(settings))),
      limits_(limits),
      ytDlp_({settings_.program, settings_.version}, settings_.named),
      places_(limits.children, limits.betweenLists),
      warm_([this] { return StartChild(TextCommand(ytDlp_.Last().program, settings_.config)); },
            limits.warm) {}

SiteAnswer SiteFetcher::List(std::string_view code, const Patience& patience) {
  SiteAnswer answer =
      Run(Places::Kind::List, patience, [&](const Patience& bounded) { return RunList(code, bounded); });
  if (answer.list && !answer.list->tracks.empty()) Prepare();
  return answer;
}

SiteAnswer SiteFetcher::Text(std::string_view code, const SiteTrack& track, const Patience& patience) {
  return Run(Places::Kind::Text, patience,
             [&](const Patience& bounded) { return RunText(code, track, bounded); });
}

SiteAnswer SiteFetcher::Run(Places::Kind kind, const Patience& patience,
                            const std::function<SiteAnswer(const Patience&)>& run) {
  if (ytDlp_.Get(patience).program.empty()) return {nullptr, "", {"yt-dlp is not installed."}};
  if (Cause cause = PauseCause(); !cause.sentence.empty()) return {nullptr, "", std::move(cause)};
  const auto place = places_.Take(kind, patience);
  if (!place) return {nullptr, "", {"Too many videos are requested at a time; try again."}};
  if (Cause cause = PauseCause(); !cause.sentence.empty()) return {nullptr, "", std::move(cause)};
  SiteAnswer answer = run(patience);
  PauseIfAsked(answer.cause);
  answer.cause = WithDoubtAbout(ytDlp_.Last().version, Today(), std::move(answer.cause));
  return answer;
}

SiteAnswer SiteFetcher::RunList(std::string_view code, const Patience& patience) {
  const auto ready = StartChild(ListCommand(ytDlp_.Last().program, settings_.config, code));
  const ChildEnd end = Finish(*ready, "", patience);
  auto list = ReadSiteList(end.output, code, limits_);
  SiteAnswer answer;
  if (list && !list->tracks.empty()) {
    answer.cause = GapIn(end.messages);
  } else {
    const bool hasNone =
        list && end.how == ChildEnd::How::Exited && end.code == 0 && CauseIn(end.messages).sentence.empty();
    answer.cause = hasNone ? Cause{"This video has no captions.", Effect::NoCaptions} : FaultOf(*ready, end);
    LogFailure("of " + std::string(code), answer.cause, end);
  }
  if (list) answer.list = std::make_shared<const SiteList>(*std::move(list));
  return answer;
}

SiteAnswer SiteFetcher::RunText(std::string_view code, const SiteTrack& track, const Patience& patience) {
  auto ready = warm_.Take();
  if (!ready) ready = StartChild(TextCommand(ytDlp_.Last().program, settings_.config));
  Prepare();
  const ChildEnd end = Finish(*ready, TextInput(track.entry), patience);
  SiteAnswer answer = ReadText(track, *ready, end);
  if (answer.document.empty())
    LogFailure("of " + std::string(code) + ", " + track.track.language, answer.cause, end);
  return answer;
}

SiteAnswer SiteFetcher::ReadText(const SiteTrack& track, const ReadyChild& ready, const ChildEnd& end) const {
  if (end.how != ChildEnd::How::Exited || end.code != 0) return {nullptr, "", FaultOf(ready, end)};
  auto bytes = ready.folder.Read(std::string(kTextFile) + std::string(track.format), limits_.fileBytes);
  if (!bytes) return {nullptr, "", FaultOf(ready, end)};
  if (bytes->empty()) return {nullptr, "", {"The site sent empty captions.", Effect::Outdated}};
  const CaptionFormat* format = FormatWithEnding(track.format);
  if (!format) return {nullptr, "", {"The site has these captions in an unknown format only."}};
  auto [document, fault] =
      ToDocument(*std::move(bytes), *format, {track.track.language, track.track.automatic});
  if (document.empty()) return {nullptr, "", {"The site sent no captions: " + fault + "."}};
  return {nullptr, std::move(document), {}};
}

// Why a child that has ended left no result.
Cause SiteFetcher::FaultOf(const ReadyChild& ready, const ChildEnd& end) const {
  if (ready.folder.Path().empty()) return {"There is no space for the files of yt-dlp."};
  std::error_code ignored;
  if (end.how == ChildEnd::How::NotStarted && std::filesystem::exists(ytDlp_.Last().program, ignored))
    return {"yt-dlp can't be started; reinstall it."};
  const Cause reported = end.how == ChildEnd::How::Exited ? CauseIn(end.messages) : Cause{};
  return reported.sentence.empty() ? CauseOf(end) : reported;
}

std::unique_ptr<ReadyChild> SiteFetcher::StartChild(const std::vector<std::string>& command) const {
  ScratchFolder folder(settings_.scratch);
  Child child(command, folder.Path(), limits_.fileBytes);
  return std::make_unique<ReadyChild>(ReadyChild{std::move(folder), std::move(child)});
}

ChildEnd SiteFetcher::Finish(ReadyChild& ready, std::string_view input, const Patience& patience) const {
  return ready.child.Finish(input, limits_.outputBytes, limits_.messageBytes, patience);
}

void SiteFetcher::Prepare() try {
  if (!PauseCause().sentence.empty()) return;
  warm_.Prepare();
  if (!PauseCause().sentence.empty()) warm_.Take();  // the pause began meanwhile
} catch (const std::exception& error) {              // no thread or descriptor left
  Log(error.what());
}

Cause SiteFetcher::PauseCause() {
  const std::lock_guard lock(mutex_);
  return Clock::now() < pausedUntil_ ? pauseCause_ : Cause{};
}

void SiteFetcher::PauseIfAsked(const Cause& cause) {
  if (cause.effect != Effect::Pause) return;
  {
    const std::lock_guard lock(mutex_);
    pausedUntil_ = Clock::now() + limits_.pause;
    pauseCause_ = cause;
  }
  warm_.Take();
}

}  // namespace gateway
