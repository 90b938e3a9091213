#include "TourPlatform.h"

#include <iostream>

void TourPlatform::MessageBox(const std::string& text, const std::string& cause) {
  std::cout << "Ravelyn says: " << text << (cause.empty() ? "" : "\n  " + cause) << std::endl;
}

std::optional<std::string> TourPlatform::AskSavePath(const std::string&, const std::string& name) {
  return folder_ + "/" + prefix_ + name;
}

void TourPlatform::ShowURL(const std::string& address) {
  std::cout << "A click on the first hit opens " << address << std::endl;
}

void TourPlatform::Launch(const std::string& path) {
  std::cout << "Opened after saving: " << path << std::endl;
}
