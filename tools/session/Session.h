// The program without a screen: one action a line comes in, one JSON object a line goes out, in the
// order in which a person would notice things. Every action ends with exactly one "done" or, where it
// can't be done, one "error"; the session then goes on.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "SessionPlatform.h"
#include "app/App.h"

class TextField;

class Session {
 public:
  // prefsFolder must exist. out takes the objects and is flushed behind each action.
  Session(Endpoints endpoints, std::string prefsFolder, std::ostream& out);
  ~Session();

  // Reads actions until the end of in. Lines count from 1; blank ones and those that begin with "#"
  // are passed over. Input that ends without "quit" saves nothing.
  void Run(std::istream& in);
  bool HadErrors() const { return hadErrors_; }

 private:
  void Act(const std::string& line);
  void Open();
  void Quit();
  TextField& FieldNamedFirst(std::string& rest) const;
  void Click(const std::string& target);
  void Select(const std::string& rows);
  void QueueSave(const std::string& path);
  void Cell(const std::string& rest);
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
