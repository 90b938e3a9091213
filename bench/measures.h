// The measures, by subject. Each prints its details to out and adds its rows to the table. A
// comparison whose contenders don't give the same result raises std::runtime_error.
#pragma once

#include <iosfwd>
#include <string>

#include "Table.h"

class Window1;

struct Effort {
  bool brief = false;  // fewer turns and no million cues: for a quick look, not for the record
};

void MeasureConversion(Effort effort, std::ostream& out, Table& table);
void MeasureGrowth(Effort effort, std::ostream& out, Table& table);
void MeasureTracks(Window1& window, Effort effort, std::ostream& out, Table& table);
void MeasureSearch(Effort effort, std::ostream& out, Table& table);
void MeasureCaptions(Effort effort, std::ostream& out, Table& table);
void MeasureFetch(const std::string& host, Effort effort, std::ostream& out, Table& table);
// The gateway as a process, with the real yt-dlp before a site on the loopback.
void MeasureGateway(Effort effort, std::ostream& out, Table& table);
void MeasureMemory(const std::string& host, Effort effort, std::ostream& out, Table& table);
// These two on the X display of DISPLAY.
void MeasureWaiting(const std::string& host, Effort effort, std::ostream& out, Table& table);
void MeasureDesktop(Effort effort, std::ostream& out, Table& table);

// The other side of MeasureMemory, in a process of its own: saves timed text of so many cues from
// host as an SRT file, and prints by how many bytes the process grew at the peak.
int PrintGrowthOfDownload(const std::string& host, const std::string& cues);
// The other side of MeasureGrowth: times the stages and prints a line for each.
int PrintGrowthOfStages(Effort effort);
