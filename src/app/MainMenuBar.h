// The one menu bar of the program, and accessors for the menus and items of the first version. An item added
// later is found by its name.
#pragma once

#include "runtime/Menu.h"

MenuBar& MainMenuBar();

Menu& FileMenu();
Menu& EditMenu();
MenuItem& FileQuit();
MenuItem& FileNewWindow();
MenuItem& FileAboutRavelyn();
MenuItem& FileHelp();
MenuItem& EditUndo();
MenuItem& EditSeparator1();
MenuItem& EditCut();
MenuItem& EditCopy();
MenuItem& EditPaste();
MenuItem& EditClear();
MenuItem& EditSeparator2();
MenuItem& EditSelectAll();
