// The desktop as a host that answers by itself: every save dialog gets its suggested name in the tour's
// folder, and what would be shown or opened is printed.
#pragma once

#include "desktop/QtPlatform.h"

class TourPlatform : public QtPlatform {
 public:
  // Files are saved as folder/prefix + name.
  explicit TourPlatform(std::string folder) : folder_(std::move(folder)) {}
  void SavePrefixed(std::string prefix) { prefix_ = std::move(prefix); }

  void MessageBox(const std::string& text, const std::string& cause) override;
  std::optional<std::string> AskSavePath(const std::string& filter, const std::string& name) override;
  void ShowURL(const std::string& address) override;
  void Launch(const std::string& path) override;
  // The user's own preferences are neither read nor written.
  std::string PreferencesFolder() override { return ""; }

 private:
  std::string folder_;
  std::string prefix_;
};
