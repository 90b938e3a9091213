#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <thread>

#include "../Turns.h"
#include "../measures.h"
#include "FirstWindow.h"

namespace {

constexpr char kUsualForm[] = "the form by hand in Qt";

// A temporary home folder for the files of the programs that are started.
class Home {
 public:
  Home() {
    std::filesystem::create_directories(path_);
    for (const char* name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
      ::setenv(name, path_.c_str(), 1);
    }
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
  }
  ~Home() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

 private:
  std::string path_ =
      (std::filesystem::temp_directory_path() / ("ravelyn-bench-home-" + std::to_string(::getpid())))
          .string();
};

// Milliseconds of one program's starts.
struct Starts {
  std::vector<double> shown, drawn;

  // The first turn fills the caches and isn't counted.
  void Add(const char* path, int turn) {
    const StartedProgram program(path);
    if (turn == 0) return;
    shown.push_back(program.ShownAfter());
    drawn.push_back(program.DrawnAfter());
  }
};

struct Rest {
  double resident, own;
};

Rest MemoryAtRest(const char* path) {
  const StartedProgram program(path);
  std::this_thread::sleep_for(std::chrono::seconds(2));  // for the work that follows the first window
  return {program.Resident(), program.Private()};
}

double MillisecondsToShow(const char* how, std::size_t hits) {
  const std::string command = std::string("'") + RAVELYN_SHOW_HITS + "' " + how + " " + std::to_string(hits);
  FILE* out = ::popen(command.c_str(), "r");
  double milliseconds = 0;
  const bool read = out && std::fscanf(out, "%lf", &milliseconds) == 1;
  if (!out || ::pclose(out) != 0 || !read) throw std::runtime_error("the list of hits could not be shown");
  return milliseconds;
}

}  // namespace

void MeasureDesktop(Effort effort, std::ostream& out, Table& table) {
  Measure row{"start until drawn, against " + std::string(kUsualForm), Measure::Bound::AtMost, 1.2, 1.0,
              std::nullopt};
  if (!std::getenv("DISPLAY")) {
    row.remark = "no display";
    return table.push_back(row);
  }
  const Home home;
  Starts us, usual;
  for (int turn = 0; turn <= (effort.brief ? 5 : 31); ++turn) {
    us.Add(RAVELYN_PROGRAM, turn);
    usual.Add(RAVELYN_USUAL_FORM, turn);
  }
  std::vector<double> hits, items;
  for (int turn = 0; turn < (effort.brief ? 1 : 5); ++turn) {
    hits.push_back(MillisecondsToShow("us", 200'000));
    items.push_back(MillisecondsToShow("table", 200'000));
  }
  const Rest atRest = MemoryAtRest(RAVELYN_PROGRAM), usualAtRest = MemoryAtRest(RAVELYN_USUAL_FORM);
  row.seen = MedianRatio(us.drawn, usual.drawn);
  const auto megabytes = [](double bytes) { return Rounded(bytes / 1e6, 1); };
  const auto median = [](const std::vector<double>& times) { return Rounded(Median(times), 0); };
  const std::vector<std::string> rows[] = {
      {"measure", "us", kUsualForm, "Qt's table of items"},
      {"---", "---", "---", "---"},
      {"start to the window, ms", median(us.shown), median(usual.shown), ""},
      {"start to what is drawn in it, ms", median(us.drawn), median(usual.drawn), ""},
      {"memory at rest, MB", megabytes(atRest.resident), megabytes(usualAtRest.resident), ""},
      {"of that, shared with no other program, MB", megabytes(atRest.own), megabytes(usualAtRest.own), ""},
      {"200,000 hits to the last row drawn, ms", median(hits), "", median(items)}};
  out << "\n## The program on a screen\n\n";
  for (const auto& cells : rows) out << TableRow(cells) << std::flush;
  table.push_back(row);
}
