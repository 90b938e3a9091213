// Prints the objects of a session, one a line. Bytes that are no UTF-8 print as U+FFFD.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

class App;

class Printer {
 public:
  explicit Printer(std::ostream& out) : out_(out) {}

  // Without the member cause where that is "".
  void Message(const std::string& text, const std::string& cause);
  void Save(const std::string& filter, const std::string& name, const std::optional<std::string>& path);
  void Launch(const std::string& path);
  void Browse(const std::string& address);
  void Outcome(const std::string& text);   // how a command ended
  void Focus(const std::string& control);  // with its window, as in "Window1.TextField1"
  void Show(const std::string& window);
  void Close(const std::string& window);
  void State(const App& app);
  // Each ends one action; line is its number in the input, from 1.
  void Done(const std::string& action);
  void Error(std::int64_t line, const std::string& text);

 private:
  std::ostream& out_;
};
