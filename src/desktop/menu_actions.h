// The menu bar of a window, from its record: a bar to be seen, or the shortcuts alone.
#pragma once

#include <functional>
#include <string>

#include "runtime/Menu.h"

class QMenuBar;
class QWidget;

using ChooseItem = std::function<void(const std::string& item)>;

// Fills bar with the record's menus. The items are enabled as the record tells when a menu opens.
void fillMenuBar(QMenuBar& bar, const MenuBar& record, const ChooseItem& choose);
// Gives window the shortcuts of all items; or that of the item that quits alone.
void addShortcuts(QWidget& window, const MenuBar& record, const ChooseItem& choose);
void addQuitShortcut(QWidget& window, const MenuBar& record, const ChooseItem& choose);
