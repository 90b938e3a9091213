#include "app/Progress.h"

#include "runtime/Numbers.h"
#include "runtime/Text.h"

namespace {

constexpr std::int64_t kTicksASecond = 60;
constexpr std::int64_t kWorthNaming = 2 * kTicksASecond;

std::string Counted(std::int64_t count, const std::string& one) {
  return Str(count) + " " + one + (count == 1 ? "" : "s");
}

void Add(std::string& list, const std::string& item) { list += (list.empty() ? "" : ", ") + item; }

std::string Files(const Progress& progress) {
  if (progress.cancelled == 0 && progress.failed == 0) {
    const std::string folder = progress.folder.substr(progress.folder.rfind('/') + 1);
    return Counted(progress.saved, "file") + " saved" + (folder.empty() ? "" : " in " + folder);
  }
  std::string words;
  if (progress.saved > 0) Add(words, Str(progress.saved) + " saved");
  if (progress.cancelled > 0) Add(words, Str(progress.cancelled) + " cancelled");
  if (progress.failed > 0) Add(words, Str(progress.failed) + " failed");
  return words;
}

std::string Outcome(const Progress& progress) {
  if (progress.languages >= 0)
    return progress.languages == 0 ? "No languages" : Counted(progress.languages, "language");
  if (progress.saved + progress.cancelled + progress.failed > 0) return Files(progress);
  if (progress.searched == 0) return "";
  if (progress.hits == 0) return "No hits";
  return Counted(progress.hits, "hit") + " in " + Counted(progress.withHits, "track");
}

std::string Seconds(std::int64_t ticks) {
  constexpr std::int64_t kTicksATenth = kTicksASecond / 10;
  return Str(ticks / kTicksASecond) + "." + Str(ticks % kTicksASecond / kTicksATenth) + " s";
}

}  // namespace

void Progress::CountSaved(const std::string& path) {
  const std::string in = path.substr(0, path.rfind('/'));
  folder = saved == 0 || in == folder ? in : "";
  ++saved;
}

std::string Progress::Step() const {
  const bool counts = of > 1 && place <= of;  // the user may change the choice while a dialog is open
  return counts ? item + ", " + Str(place) + " of " + Str(of) : item;
}

std::string Progress::Words(bool wasStopped, std::int64_t now) const {
  std::string words = wasStopped ? "Stopped" : "";
  if (const std::string outcome = Outcome(*this); !outcome.empty()) Add(words, outcome);
  if (!words.empty() && now - begun > kWorthNaming) words += ", after " + Seconds(now - begun);
  return words;
}
