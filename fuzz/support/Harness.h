// What the fuzzers share: the claim that must hold, and the program with its form, over a host that
// keeps all calls and a network that is played in process.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/App.h"
#include "app/Window1.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/Wire.h"

// Ends the run as a finding, with the claim that does not hold.
#define HOLDS(claim) ((claim) ? void() : fuzz::DoesNotHold(#claim, __FILE__, __LINE__))

namespace fuzz {

[[noreturn]] void DoesNotHold(const char* claim, const char* file, int line);

// Cuts an input into values from the front; 0 and "" when it has run out.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}
  std::uint8_t Byte();
  // As far as the next line feed, which is dropped.
  std::string Line();
  // All that is left.
  std::string Rest();
  bool IsOver() const { return left_.empty(); }

 private:
  std::string_view left_;
};

// The opened program. Time goes by a minute with every yield, so that no silence is waited for.
class Program {
 public:
  Program();
  FakePlatform host;
  App app;
  Window1& form;

  // Selects row 0 of the track list, which it makes.
  void GiveTrack(const std::string& name, const std::string& code);
  // The texts of the message boxes since the last call. None may speak of an exception that nobody
  // caught.
  std::vector<std::string> TakeMessages();
};

// A folder that lives as long as the process.
const TemporaryFolder& Folder();

bool IsValidUTF8(std::string_view text);
std::vector<std::string> Lines(std::string_view text);  // each ended by LF; a last piece without one counts

}  // namespace fuzz
