// The program without a screen: reads one action a line and prints one JSON object a line for everything that
// a user would notice, in order. Each action ends with one "done" or, if it can't be done, with one "error",
// and the session goes on.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "SessionPlatform.h"
#include "app/App.h"

class TextField;

class Session {
 public:
  // Requires: prefsFolder exists. out is flushed after each action.
  Session(Endpoints endpoints, std::string prefsFolder, std::ostream& out);
  ~Session();

  // Reads actions until the end of in; blank lines and lines that begin with "#" are skipped. Without "quit"
  // no preferences are saved.
  void Run(std::istream& in);
  bool HadErrors() const { return hadErrors_; }

 private:
  void Act(const std::string& line);
  void Open();
  void Quit();
  TextField& TakeField(std::string& rest) const;
  void Click(const std::string& target);
  void Select(const std::string& rows);
  void QueueSave(const std::string& path);
  void ClickCell(const std::string& rest);
  void Choose(const std::string& item);
  void Activate(const std::string& window);
  void CloseWindow(const std::string& window);
  void Resize(const std::string& rest);
  void Dump();
  Window& OpenWindow(const std::string& name) const;

  Endpoints endpoints_;
  Printer printer_;
  SessionPlatform platform_;
  std::unique_ptr<App> app_;
  bool stopped_ = false;
  bool hadErrors_ = false;
};
