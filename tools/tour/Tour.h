// Does the program's main job by clicks and keys on its widgets.
#pragma once

#include <string>

#include "TourPlatform.h"
#include "app/App.h"

class Tour {
 public:
  // The pictures are saved in folder.
  Tour(App& app, TourPlatform& platform, std::string folder)
      : app_(app), platform_(platform), folder_(std::move(folder)) {}

  // False if anything went wrong, which is printed. Requires: the form is on the screen.
  bool Run();

 private:
  void Search();
  void SaveInEveryForm();
  void SearchWords();
  void ShowAbout();
  QWidget* WidgetOf(const std::string& window, const std::string& control) const;
  void Click(const std::string& window, const std::string& control);
  void Type(const std::string& control, const std::string& text);
  void Picture(const std::string& window, const std::string& file);
  void Check(bool holds, const std::string& what);

  App& app_;
  TourPlatform& platform_;
  std::string folder_;
  bool succeeded_ = true;
};
