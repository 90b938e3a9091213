// The menu bar as data: menus of items in the order in which a person sees them.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "runtime/Platform.h"

// Handlers by item name. A handler says whether nobody else needs to deal with the choice.
using MenuHandlers = std::map<std::string, std::function<bool()>>;

struct MenuItem {
  std::string Name = {};
  std::string Caption = {};   // "&" marks the access key; "-" is a separator
  std::string Shortcut = {};  // such as "Cmd+Q"; "" for none
  std::optional<EditAction> Edits = {};
  bool Quits = false;      // the platform's own quit command (QuitMenuItem)
  bool ShowsHelp = false;  // takes the platform's own shortcut for help
  bool Visible = true;
  bool AutoEnable = true;
  bool Enabled = true;

  bool IsSeparator() const { return Caption == "-"; }
};

// An item that ends the application.
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

  // The item of this name, menus and separators left out; nullptr if there is none.
  MenuItem* Find(const std::string& name);
};
