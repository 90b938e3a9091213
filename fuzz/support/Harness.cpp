#include "support/Harness.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "ravelyn/commands.h"

// Replaces the one of runtime/await.cpp: no run waits.
bool IsReadyWithin(int, const Awaited&) { return true; }

namespace fuzz {

void DoesNotHold(const char* claim, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, claim);
  std::abort();
}

std::uint8_t Input::Byte() {
  if (left_.empty()) return 0;
  const auto byte = static_cast<std::uint8_t>(left_.front());
  left_.remove_prefix(1);
  return byte;
}

std::string Input::Line() {
  const std::size_t end = std::min(left_.find('\n'), left_.size());
  std::string line(left_.substr(0, end));
  left_.remove_prefix(std::min(end + 1, left_.size()));
  return line;
}

std::string Input::Rest() {
  std::string rest(left_);
  left_ = {};
  return rest;
}

Program::Program() : app(host, kCommands), form(Window1::Get()) {
  host.ticksEachYield = 60 * 60;
  host.prefsFolder = Folder().Path();
  host.calls.clear();
}

void Program::GiveTrack(const std::string& name, const std::string& code) {
  form.Listbox1.AddRow(name);
  form.Listbox1.SetCell(0, 1, code);
  form.Listbox1.UserSelects({0});
}

std::vector<std::string> Program::TakeMessages() {
  constexpr std::string_view kMessage = "message: ";
  std::vector<std::string> messages;
  for (const std::string& call : host.calls) {
    if (!call.starts_with(kMessage)) continue;
    messages.push_back(call.substr(kMessage.size()));
    HOLDS(messages.back().find("Exception: ") == std::string::npos);
  }
  host.calls.clear();
  return messages;
}

const TemporaryFolder& Folder() {
  static const TemporaryFolder folder;
  return folder;
}

bool IsValidUTF8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(i);
    const std::size_t more = first < 0x80 ? 0 : first < 0xC2 ? 9 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    if (first > 0xF4 || more == 9 || i + more >= text.size()) return false;
    for (std::size_t k = 1; k <= more; ++k) {
      if ((byte(i + k) & 0xC0) != 0x80) return false;
    }
    i += more + 1;
  }
  return true;
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

}  // namespace fuzz
