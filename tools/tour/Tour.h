// The program's main job, done by clicks and keys on its widgets.
#pragma once

#include <string>

#include "TourPlatform.h"
#include "app/App.h"

class Tour {
 public:
  // folder takes the saved files and the pictures.
  Tour(App& app, TourPlatform& platform, std::string folder)
      : app_(app), platform_(platform), folder_(std::move(folder)) {}

  // The form must be on the screen. False if something did not come out as it should.
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
  bool sound_ = true;
};
