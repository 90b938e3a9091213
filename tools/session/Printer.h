// Prints the events of a session as JSON objects, one a line. Bytes that are not UTF-8 print as U+FFFD.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

class App;

class Printer {
 public:
  explicit Printer(std::ostream& out) : out_(out) {}

  // The object has no member "cause" if that is "".
  void Message(const std::string& text, const std::string& cause);
  void Save(const std::string& filter, const std::string& name, const std::optional<std::string>& path);
  void Launch(const std::string& path);
  void Browse(const std::string& address);
  void Outcome(const std::string& text);   // of a command
  void Focus(const std::string& control);  // including its window: "Window1.TextField1"
  void Show(const std::string& window);
  void Close(const std::string& window);
  void State(const App& app);
  // Each ends an action and flushes; line is its number in the input, from 1.
  void Done(const std::string& action);
  void Error(std::int64_t line, const std::string& text);

 private:
  std::ostream& out_;
};
