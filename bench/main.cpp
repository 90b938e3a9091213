// ravelyn-bench: compares the program with what one would write instead of it.

#include <algorithm>
#include <functional>
#include <iostream>

#include "PageServer.h"
#include "QuietPlatform.h"
#include "app/App.h"
#include "app/Window1.h"
#include "measures.h"
#include "ravelyn/commands.h"

namespace {

constexpr char kUsage[] =
    "Usage: ravelyn-bench [--brief] [SUBJECT...]\n"
    "Measures, prints Markdown, and exits with 1 if a must is missed.\n"
    "Subjects: conversion growth tracks captions search fetch gateway memory desktop waiting\n"
    "(default: all).\n"
    "--brief takes fewer turns and leaves out inputs of a million cues.\n";

using Subject = std::pair<std::string, std::function<void(Effort, Table&)>>;

Table MeasureAll(const std::vector<Subject>& subjects, const std::vector<std::string>& chosen,
                 Effort effort) {
  Table table;
  for (const auto& [name, measure] : subjects) {
    if (chosen.empty() || std::count(chosen.begin(), chosen.end(), name)) measure(effort, table);
  }
  return table;
}

int Run(const std::vector<std::string>& chosen, Effort effort) {
  const PageServer server;
  QuietPlatform platform;
  App app(platform, kCommands, LocalEndpoints(server.Host()));
  Window1& window = Window1::Get();
  auto& out = std::cout;
  const Table table =
      MeasureAll({{"fetch", [&](Effort e, Table& t) { MeasureFetch(server.Host(), e, out, t); }},
                  {"conversion", [&](Effort e, Table& t) { MeasureConversion(e, out, t); }},
                  {"growth", [&](Effort e, Table& t) { MeasureGrowth(e, out, t); }},
                  {"tracks", [&](Effort e, Table& t) { MeasureTracks(window, e, out, t); }},
                  {"captions", [&](Effort e, Table& t) { MeasureCaptions(e, out, t); }},
                  {"search", [&](Effort e, Table& t) { MeasureSearch(e, out, t); }},
                  {"gateway", [&](Effort e, Table& t) { MeasureGateway(e, out, t); }},
                  {"memory", [&](Effort e, Table& t) { MeasureMemory(server.Host(), e, out, t); }},
                  {"desktop", [&](Effort e, Table& t) { MeasureDesktop(e, out, t); }},
                  {"waiting", [&](Effort e, Table& t) { MeasureWaiting(server.Host(), e, out, t); }}},
                 chosen, effort);
  out << "\n## Measures\n\n";
  Print(out, table);
  return std::any_of(table.begin(), table.end(), IsMissed) ? 1 : 0;
}

}  // namespace

int main(int count, char** values) {
  std::vector<std::string> arguments(values + 1, values + count);
  if (arguments.size() == 3 && arguments[0] == "--download") {
    return PrintGrowthOfDownload(arguments[1], arguments[2]);
  }
  if (std::count(arguments.begin(), arguments.end(), "--help")) return std::cout << kUsage, 0;
  const Effort effort{std::erase(arguments, "--brief") > 0};
  if (arguments == std::vector<std::string>{"--growth"}) return PrintGrowthOfStages(effort);
  try {
    return Run(arguments, effort);
  } catch (const std::exception& e) {
    std::cerr << "ravelyn-bench: " << e.what() << "\n";
    return 2;
  }
}
