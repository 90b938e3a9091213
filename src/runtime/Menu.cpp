#include "runtime/Menu.h"

MenuItem* MenuBar::Find(const std::string& name) {
  for (Menu& menu : Menus) {
    for (MenuItem& item : menu.Items) {
      if (item.Name == name && !item.IsSeparator()) return &item;
    }
  }
  return nullptr;
}
