#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <stdexcept>

#include "../CurlClient.h"
#include "../Turns.h"
#include "../Usage.h"
#include "../measures.h"

namespace {

constexpr char kName[] = "silence of 3 s, against libcurl: ";

struct Window {
  Usage rest, waiting;
  double click = 0, slowestClick = 0;  // ms
};

Window InWindow(const std::string& host, int clicks) {
  const std::string command = std::string("QT_QPA_PLATFORM=xcb '") + RAVELYN_WAIT_IN_WINDOW + "' " + host +
                              " " + std::to_string(clicks);
  FILE* out = ::popen(command.c_str(), "r");
  Window w;
  const bool read =
      out && std::fscanf(out, "%lf %lf %lf %lf %lf %lf", &w.rest.milliseconds, &w.rest.wakeUps,
                         &w.waiting.milliseconds, &w.waiting.wakeUps, &w.click, &w.slowestClick) == 6;
  if (!out || ::pclose(out) != 0 || !read) throw std::runtime_error("the waiting form could not be measured");
  return w;
}

// A request that is never answered, less one that is given up earlier, so that connecting is not counted.
Usage InCurl(const std::string& url) {
  const auto waiting = [&](int seconds) {
    const Usage before = Usage::Now();
    CurlClient().Get(url, seconds);
    return Usage::Now() - before;
  };
  const Usage short1 = waiting(1);
  return waiting(4) - short1;
}

}  // namespace

// What the form takes at rest, for its screen and for Qt, is subtracted from what it takes in a wait.
void MeasureWaiting(const std::string& host, Effort effort, std::ostream& out, Table& table) {
  Measure time{std::string(kName) + "processor time", Measure::Bound::AtMost, 2, 0.5, std::nullopt};
  Measure wakes{std::string(kName) + "wake-ups", Measure::Bound::AtMost, 2, 0.5, std::nullopt};
  Measure click{"click to handler during a stalled request, ms, median", Measure::Bound::AtMost, 20, 2,
                std::nullopt};
  if (!std::getenv("DISPLAY")) {
    for (Measure* each : {&time, &wakes, &click}) each->remark = "no display", table.push_back(*each);
    return;
  }
  std::vector<double> restMs, restWakes, ms, wakeUps, clicks, slowest, curlMs, curlWakes;
  for (int turn = 0; turn < (effort.brief ? 1 : 5); ++turn) {
    const Window w = InWindow(host, 30);
    const Usage curl = InCurl("http://" + host + "/silent");
    restMs.push_back(w.rest.milliseconds), restWakes.push_back(w.rest.wakeUps);
    ms.push_back(w.waiting.milliseconds), wakeUps.push_back(w.waiting.wakeUps);
    clicks.push_back(w.click), slowest.push_back(w.slowestClick);
    curlMs.push_back(curl.milliseconds), curlWakes.push_back(curl.wakeUps);
  }
  const auto beyond = [](const std::vector<double>& all, const std::vector<double>& rest) {
    return std::max(0.0, Median(all) - Median(rest));
  };
  time.seen = beyond(ms, restMs) / Median(curlMs);
  wakes.seen = beyond(wakeUps, restWakes) / Median(curlWakes);
  click.seen = Median(clicks);
  click.remark = "slowest " + Rounded(*std::max_element(slowest.begin(), slowest.end()), 1);
  out << "\n## 3 s of silence\n\n"
      << TableRow({"measure", "the form at rest", "the form in a Search", "libcurl"})
      << TableRow({"---", "---", "---", "---"})
      << TableRow({"processor time, ms", Rounded(Median(restMs), 2), Rounded(Median(ms), 2),
                   Rounded(Median(curlMs), 2)})
      << TableRow({"wake-ups", Rounded(Median(restWakes), 0), Rounded(Median(wakeUps), 0),
                   Rounded(Median(curlWakes), 0)})
      << std::flush;
  for (const Measure& each : {time, wakes, click}) table.push_back(each);
}
