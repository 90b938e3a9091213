#include <chrono>
#include <functional>
#include <ostream>
#include <stdexcept>

#include "CurlClient.h"
#include "PageServer.h"
#include "Turns.h"
#include "Usage.h"
#include "http/HTTPSocket.h"
#include "measures.h"

namespace {

using Get = std::function<std::string(const std::string& url, int timeoutSeconds)>;

// The program uses each socket for one request.
std::string GetByUs(const std::string& url, int timeoutSeconds) {
  HTTPSocket socket;
  return socket.Get(url, timeoutSeconds);
}

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double ProcessorTime() { return Usage::Now().milliseconds / 1e3; }

struct Medians {
  double us, curl;
};

// Alternates our requests and those of libcurl. clock gives seconds.
Medians InTurns(double (*clock)(), const std::string& url, int timeoutSeconds, std::size_t length,
                std::size_t turns) {
  CurlClient client;
  const Get contenders[] = {GetByUs, [&](auto& u, int seconds) { return client.Get(u, seconds); }};
  std::vector<double> times[2];
  for (std::size_t i = 0; i < turns * 2; ++i) {
    const double start = clock();
    const std::string body = contenders[i % 2](url, timeoutSeconds);
    times[i % 2].push_back(clock() - start);
    if (body.size() != length) throw std::runtime_error("a page has the wrong length");
  }
  return {Median(times[0]), Median(times[1])};
}

}  // namespace

void MeasureFetch(const std::string& host, Effort effort, std::ostream& out, Table& table) {
  const std::string base = "http://" + host;
  const Medians small = InTurns(Now, base + "/small", 30, 2000, effort.brief ? 200 : 2000);
  const Medians smallWork = InTurns(ProcessorTime, base + "/small", 30, 2000, effort.brief ? 200 : 2000);
  const Medians large = InTurns(Now, base + "/large", 30, PageServer::kLargePage, effort.brief ? 3 : 9);
  constexpr double kMegabytes = static_cast<double>(PageServer::kLargePage) / 1e6;
  out << "\n## Fetch on the loopback\n\n"
      << TableRow({"measure", "us", "libcurl"}) << TableRow({"---", "---", "---"})
      << TableRow({"page of 2 KB, µs", Rounded(small.us * 1e6, 0), Rounded(small.curl * 1e6, 0)})
      << TableRow({"page of 2 KB, µs of processor time", Rounded(smallWork.us * 1e6, 0),
                   Rounded(smallWork.curl * 1e6, 0)})
      << TableRow(
             {"page of 200 MB, MB/s", Rounded(kMegabytes / large.us, 0), Rounded(kMegabytes / large.curl, 0)})
      << std::flush;
  table.push_back(
      {"small request, median against libcurl", Measure::Bound::AtMost, 1.0, 0.8, small.us / small.curl});
  table.push_back({"200 MB body kept in memory, speed against libcurl", Measure::Bound::AtLeast, 1.0, 2.0,
                   large.curl / large.us});
}
