// The measures, by subject. Each prints its details to out and adds its rows to the table, and raises
// std::runtime_error if the contenders' results differ.
#pragma once

#include <iosfwd>
#include <string>

#include "Table.h"

class Window1;

struct Effort {
  bool brief = false;  // fewer turns, no input of a million cues
};

void MeasureConversion(Effort effort, std::ostream& out, Table& table);
void MeasureGrowth(Effort effort, std::ostream& out, Table& table);
void MeasureTracks(Window1& window, Effort effort, std::ostream& out, Table& table);
void MeasureSearch(Effort effort, std::ostream& out, Table& table);
void MeasureCaptions(Effort effort, std::ostream& out, Table& table);
void MeasureFetch(const std::string& host, Effort effort, std::ostream& out, Table& table);
// The gateway as a process, with the real yt-dlp and a site on the loopback.
void MeasureGateway(Effort effort, std::ostream& out, Table& table);
void MeasureMemory(const std::string& host, Effort effort, std::ostream& out, Table& table);
// These two use the X display of DISPLAY.
void MeasureWaiting(const std::string& host, Effort effort, std::ostream& out, Table& table);
void MeasureDesktop(Effort effort, std::ostream& out, Table& table);

// For MeasureMemory, in a process of its own: saves timed text of `cues` cues from host as SRT and prints by
// how many bytes the process grew at its peak.
int PrintGrowthOfDownload(const std::string& host, const std::string& cues);
// For MeasureGrowth, in a process of its own: times the stages and prints a line for each.
int PrintGrowthOfStages(Effort effort);
