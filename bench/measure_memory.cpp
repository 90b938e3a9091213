#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "QuietPlatform.h"
#include "app/App.h"
#include "app/Window1.h"
#include "measures.h"
#include "ravelyn/commands.h"
#include "samples.h"

namespace {

// A value of this process's status file, in bytes.
double StatusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::strtod(line.c_str() + name.size() + 1, nullptr) * 1024;
  }
  throw std::runtime_error("/proc/self/status has no " + name);
}

void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

double GrowthOfDownload(const std::string& host, std::size_t cues) {
  const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command = "'" + self + "' --download " + host + " " + std::to_string(cues);
  FILE* out = ::popen(command.c_str(), "r");
  double growth = 0;
  const bool read = out && std::fscanf(out, "%lf", &growth) == 1;
  if (out && ::pclose(out) != 0) growth = 0;
  if (!read || growth <= 0) throw std::runtime_error("the Download of the memory measure failed");
  return growth;
}

void Download(Window1& window, std::int64_t row, const std::string& path) {
  window.DoSRT(row);
  if (!std::filesystem::exists(path)) throw std::runtime_error("nothing was saved");
  std::filesystem::remove(path);
}

}  // namespace

int PrintGrowthOfDownload(const std::string& host, const std::string& cues) {
  QuietPlatform platform;
  const std::string path =
      (std::filesystem::temp_directory_path() / ("ravelyn-bench-" + std::to_string(::getpid()) + ".srt"))
          .string();
  platform.savePath = path;
  App app(platform, kCommands, LocalEndpoints(host));
  Window1& window = Window1::Get();
  window.openBox.SetValue(false);
  for (const std::string& code : {std::string("10"), cues}) {
    window.Listbox1.AddRow("English");
    window.Listbox1.SetCell(window.Listbox1.LastIndex(), 1, code);
  }
  Download(window, 0, path);  // loads what is loaded only once
  window.TextArea1.SetText("");
  ResetPeak();
  const double before = StatusBytes("VmRSS");
  Download(window, 1, path);
  std::cout << static_cast<long long>(StatusBytes("VmHWM") - before) << "\n";
  return 0;
}

void MeasureMemory(const std::string& host, Effort effort, std::ostream& out, Table& table) {
  out << "\n## Memory of a Download as SRT\n\n"
      << TableRow({"cues", "document, MB", "peak growth, MB", "bytes per document byte"})
      << TableRow({"---", "---", "---", "---"});
  double worst = 0;
  for (const std::size_t cues : {10'000, 100'000, 1'000'000}) {
    if (effort.brief && cues > 100'000) continue;
    const auto length = static_cast<double>(TimedTextDocument(cues).size());
    const double growth = GrowthOfDownload(host, cues);
    worst = std::max(worst, growth / length);
    out << TableRow({std::to_string(cues), Rounded(length / 1e6, 1), Rounded(growth / 1e6, 1),
                     Rounded(growth / length, 2)})
        << std::flush;
  }
  table.push_back({"peak memory of a Download per document byte", Measure::Bound::AtMost, 4, 2, worst});
}
