// The menu bar as data: menus of items in display order.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "runtime/Platform.h"

// Handlers by item name. A handler returns whether it has handled the choice.
using MenuHandlers = std::map<std::string, std::function<bool()>>;

struct MenuItem {
  std::string Name = {};
  std::string Caption = {};   // "&" marks the access key; "-" is a separator
  std::string Shortcut = {};  // such as "Cmd+Q"; "" for none
  std::optional<EditAction> Edits = {};
  bool Quits = false;  // ends the application (QuitMenuItem)
  bool Visible = true;
  bool AutoEnable = true;
  bool Enabled = true;
  bool ShowsHelp = false;  // has the desktop's own shortcut for help

  bool IsSeparator() const { return Caption == "-"; }
};

struct QuitMenuItem : MenuItem {
  QuitMenuItem(std::string name, std::string caption, std::string shortcut)
      : MenuItem{std::move(name), std::move(caption), std::move(shortcut), std::nullopt, true} {}
};

struct Menu {
  std::string Name;
  std::string Caption;
  std::vector<MenuItem> Items;
};

struct MenuBar {
  std::vector<Menu> Menus;

  // The item of this name, never a menu or a separator; nullptr if there is none.
  MenuItem* Find(const std::string& name);
};
