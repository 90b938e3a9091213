#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "BackgroundProgram.h"
#include "Turns.h"
#include "gateway/documents/convert.h"
#include "gateway/sources/Child.h"
#include "gateway/sources/OpenedFile.h"
#include "gateway/sources/ScratchFolder.h"
#include "gateway/sources/site_list.h"
#include "gateway/sources/yt_dlp.h"
#include "http/HTTPSocket.h"
#include "measures.h"
#include "samples.h"

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr std::size_t kManyFiles = 20'000;
constexpr std::size_t kTracks = 25;  // of the site's video "many"

// Temporary folders for the site, the captions and the cache.
class Workplace {
 public:
  Workplace() {
    std::string name = (fs::temp_directory_path() / "ravelyn-bench-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
    for (const char* folder : {"site", "captions", "full", "cache", "scratch"})
      fs::create_directory(path_ / folder);
    fs::permissions(path_ / "cache", fs::perms::owner_all);
  }
  ~Workplace() { fs::remove_all(path_); }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  fs::path path_;
};

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

double Milliseconds(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The program's own request to the gateway.
class Client {
 public:
  explicit Client(const std::string& firstLine) {
    const std::size_t from = firstLine.find("http://");
    base_ = firstLine.substr(from, firstLine.find("/ ") - from);
  }
  void List(const std::string& code) const { Ask("/timedtext?type=list&v=" + code, "<track id="); }
  void Text(const std::string& code, const std::string& language) const {
    Ask("/api/timedtext?&v=" + code + "&lang=" + language, "<text start=");
  }

 private:
  void Ask(const std::string& target, const char* expected) const {
    HTTPSocket socket;
    if (socket.Get(base_ + target, 60).find(expected) == std::string::npos)
      throw std::runtime_error("the gateway did not answer " + target);
  }
  std::string base_;
};

// yt-dlp with the gateway's options, but without the gateway.
class BareYtDlp {
 public:
  explicit BareYtDlp(gateway::SiteSettings settings) : settings_(std::move(settings)) {}

  gateway::SiteList List(const std::string& code) const {
    const auto end = Run(gateway::ListCommand(settings_.program, settings_.config, code), "", folder_);
    auto list = gateway::ReadSiteList(end.output, code, {});
    if (!list) throw std::runtime_error("yt-dlp did not list " + code + ": " + end.messages);
    return *std::move(list);
  }
  void Text(const gateway::SiteTrack& track) const {
    const gateway::ScratchFolder folder(settings_.scratch);
    const auto end = Run(gateway::TextCommand(settings_.program, settings_.config),
                         gateway::TextInput(track.entry), folder);
    if (!folder.Read(std::string(gateway::kTextFile) + std::string(track.format), 8u << 20))
      throw std::runtime_error("yt-dlp fetched no text: " + end.messages);
  }

 private:
  static gateway::ChildEnd Run(const std::vector<std::string>& command, const std::string& input,
                               const gateway::ScratchFolder& folder) {
    const gateway::SiteLimits limits;
    gateway::Child child(command, folder.Path(), limits.fileBytes);
    return child.Finish(input, limits.outputBytes, limits.messageBytes,
                        {std::chrono::steady_clock::now() + 60s, -1});
  }
  gateway::SiteSettings settings_;
  gateway::ScratchFolder folder_{settings_.scratch};
};

std::string CodeOf(std::string name) { return name + std::string(11 - name.size(), '-'); }

struct Site {
  double bareList, list, bareText, text, bareTracks, tracks;
};

// In turns. The gateway waits a second between two lists, in which its next child can start.
Site MeasureSite(const Client& client, const BareYtDlp& bare, std::size_t turns) {
  std::vector<double> times[4];
  for (std::size_t i = 0; i < turns; ++i) {
    const std::string number = std::to_string(i);
    gateway::SiteList list;
    times[0].push_back(Milliseconds([&] { list = bare.List(CodeOf("bare" + number)); }));
    times[1].push_back(Milliseconds([&] { client.List(CodeOf("list" + number)); }));
    times[2].push_back(Milliseconds([&] { bare.Text(list.tracks.at(0)); }));
    std::this_thread::sleep_for(1200ms);
    times[3].push_back(Milliseconds([&] { client.Text(CodeOf("list" + number), "en"); }));
  }
  const gateway::SiteList many = bare.List(CodeOf("many"));
  std::this_thread::sleep_for(1200ms);
  client.List(CodeOf("many"));
  std::this_thread::sleep_for(1200ms);
  const double bareTracks = Milliseconds([&] {
    for (const auto& track : many.tracks) bare.Text(track);
  });
  const double tracks = Milliseconds([&] {
    for (const auto& track : many.tracks) client.Text(CodeOf("many"), track.track.language);
  });
  if (many.tracks.size() != kTracks) throw std::runtime_error("the site has other tracks");
  return {Median(times[0]), Median(times[1]), Median(times[2]), Median(times[3]), bareTracks, tracks};
}

double MedianOf(std::size_t turns, const std::function<void()>& action) {
  std::vector<double> times;
  for (std::size_t i = 0; i < turns; ++i) times.push_back(Milliseconds(action));
  return Median(times);
}

// A number in one of a process's files in /proc, by the first word of its line.
long NumberIn(const std::string& path, const std::string& name) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string first;
    long value = 0;
    if (words >> first >> value && first == name) return value;
  }
  return 0;
}

long WakeUps(pid_t process) {
  long count = 0;
  for (const auto& thread : fs::directory_iterator("/proc/" + std::to_string(process) + "/task"))
    count += NumberIn(thread.path() / "status", "voluntary_ctxt_switches:");
  return count;
}

struct Rest {
  double megabytes;
  long wakeUps;
};

// The gateway prints its first line just before its first wait, so it is at rest a second later.
Rest MeasureRest(pid_t process) {
  std::this_thread::sleep_for(1s);
  const long before = WakeUps(process);
  std::this_thread::sleep_for(3s);
  const long resident = NumberIn("/proc/" + std::to_string(process) + "/status", "VmRSS:");
  return {static_cast<double>(resident) / 1024, WakeUps(process) - before};
}

void FillFolders(const Workplace& place) {
  const std::string captions = TimedTextDocument(2000);
  const auto document = gateway::ToDocument(captions, *gateway::FormatWithEnding("srv1"), {"en"}).document;
  WriteBytes(place / "captions/A talk [folder-----].en.srv1", captions);
  WriteBytes(place / "cache/[cached-----].en.captions", document);
  const std::string small = "00:00:01,000 --> 00:00:02,000\nwords\n";
  for (std::size_t i = 0; i < kManyFiles; ++i)
    WriteBytes(place / ("full/[" + CodeOf(std::to_string(i)) + "].en.srt"), small);
}

void Report(const Site& site, std::ostream& out, Table& table) {
  const auto row = [&](const char* name, double ours, double bare) {
    out << TableRow({name, Rounded(ours, 0), Rounded(bare, 0)});
  };
  out << "\n## Captions of the site, through the gateway\n\n"
      << TableRow({"measure, ms", "the gateway", "yt-dlp alone"}) << TableRow({"---", "---", "---"});
  row("list of a video", site.list, site.bareList);
  row("text after its list", site.text, site.bareText);
  row("25 tracks of a video, one after the other", site.tracks, site.bareTracks);
  out << std::flush;
  using Bound = Measure::Bound;
  table.push_back(
      {"list of a video, ms more than yt-dlp itself", Bound::AtMost, 30, 10, site.list - site.bareList});
  table.push_back(
      {"text after its list, against the cold call", Bound::AtMost, 0.5, 0.35, site.text / site.bareText});
  table.push_back({"25 tracks of a video, against 25 cold calls", Bound::AtMost, 0.6, 0.4,
                   site.tracks / site.bareTracks});
}

struct Local {
  double inFolder, inCache, listOfMany;
};

Local MeasureLocal(const Client& client, const Client& ofMany, std::size_t turns) {
  std::size_t next = 0;
  return {MedianOf(turns, [&] { client.Text("folder-----", "en"); }),
          MedianOf(turns, [&] { client.Text("cached-----", "en"); }),
          MedianOf(turns, [&] { ofMany.List(CodeOf(std::to_string(next++ * 7))); })};
}

void Report(const Local& local, const Rest& rest, std::ostream& out, Table& table) {
  out << "\n"
      << TableRow({"measure", "seen"}) << TableRow({"---", "---"})
      << TableRow({"text of 2,000 cues from a folder, ms", Rounded(local.inFolder, 2)})
      << TableRow({"the same from the cache, ms", Rounded(local.inCache, 2)})
      << TableRow({"list in a folder of 20,000 files, ms", Rounded(local.listOfMany, 2)})
      << TableRow({"memory at rest, MB", Rounded(rest.megabytes, 1)})
      << TableRow({"wake-ups in 3 s at rest", std::to_string(rest.wakeUps)}) << std::flush;
  using Bound = Measure::Bound;
  table.push_back({"text of 2,000 cues from a folder, ms", Bound::AtMost, 2, 1, local.inFolder});
  table.push_back({"text of 2,000 cues from the cache, ms", Bound::AtMost, 2, 1, local.inCache});
  table.push_back({"list in a folder of 20,000 files, ms", Bound::AtMost, 10, 1, local.listOfMany});
  table.push_back({"memory of the gateway at rest, MB", Bound::AtMost, 12, 8, rest.megabytes});
  table.push_back(
      {"wake-ups of the gateway in 3 s at rest", Bound::AtMost, 0, 0, static_cast<double>(rest.wakeUps)});
}

}  // namespace

void MeasureGateway(Effort effort, std::ostream& out, Table& table) {
  const Workplace place;
  FillFolders(place);
  const BackgroundProgram site({"python3", RAVELYN_SITE, place / "site"});
  const gateway::YtDlp program = gateway::FindYtDlp("");
  const BareYtDlp bare({program.program, program.version, place / "site/yt-dlp.conf", place / "scratch"});
  const std::vector<std::string> common = {RAVELYN_GATEWAY, "--stop-with-input", "--port=0", "--folder"};
  auto fetching = common, full = common;
  fetching.insert(fetching.end(), {place / "captions", "--fetch", "--ytdlp-config",
                                   place / "site/yt-dlp.conf", "--cache", place / "cache"});
  full.push_back(place / "full");

  const BackgroundProgram gateway(fetching), ofMany(full);
  const Client client(gateway.FirstLine());
  // A file that was just written is read again at each request, since it may still change unnoticed.
  std::this_thread::sleep_for(gateway::kSettling);
  const Local local = MeasureLocal(client, Client(ofMany.FirstLine()), effort.brief ? 10 : 100);
  Report(MeasureSite(client, bare, effort.brief ? 3 : 9), out, table);
  // A gateway without requests is at rest; the other one has a child that waits for a minute.
  const BackgroundProgram quiet(fetching);
  Report(local, MeasureRest(quiet.Process()), out, table);
}
