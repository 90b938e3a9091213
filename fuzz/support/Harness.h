// Shared by the fuzzers: the check of a claim, and the program with its form, on a host that records all
// calls and a simulated network.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/App.h"
#include "app/Window1.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/Wire.h"

// Aborts with the claim if it does not hold.
#define HOLDS(claim) ((claim) ? void() : fuzz::DoesNotHold(#claim, __FILE__, __LINE__))

namespace fuzz {

[[noreturn]] void DoesNotHold(const char* claim, const char* file, int line);

// Takes values from the front of an input; 0 and "" once it is empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}
  std::uint8_t Byte();
  // The text before the next line feed, which is dropped.
  std::string Line();
  // The remaining input.
  std::string Rest();
  bool IsOver() const { return left_.empty(); }

 private:
  std::string_view left_;
};

// The opened program. Each yield moves the clock by a minute, so that time-outs pass at once.
class Program {
 public:
  Program();
  FakePlatform host;
  App app;
  Window1& form;

  // Adds a row to the empty track list and selects it.
  void GiveTrack(const std::string& name, const std::string& code);
  // The texts of the message boxes since the last call. Checks that none reports an uncaught exception.
  std::vector<std::string> TakeMessages();
};

// A folder that lives as long as the process.
const TemporaryFolder& Folder();

bool IsValidUTF8(std::string_view text);
std::vector<std::string> Lines(std::string_view text);  // each ends with LF, except perhaps the last

}  // namespace fuzz
