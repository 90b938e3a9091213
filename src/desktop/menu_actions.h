// The menu bar of a window, from its record: a visible bar, or only its shortcuts.
#pragma once

#include <functional>
#include <string>

#include "runtime/Menu.h"

class QMenuBar;
class QWidget;

using ChooseItem = std::function<void(const std::string& item)>;

// Fills bar with the record's menus. A menu that opens enables its items as the record says at that time.
void fillMenuBar(QMenuBar& bar, const MenuBar& record, const ChooseItem& choose);
// Gives window the shortcuts of all items; or only that of the item that quits.
void addShortcuts(QWidget& window, const MenuBar& record, const ChooseItem& choose);
void addQuitShortcut(QWidget& window, const MenuBar& record, const ChooseItem& choose);
