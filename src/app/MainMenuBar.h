// The one menu bar of the program, and an accessor for each of its items.
#pragma once

#include "runtime/Menu.h"

MenuBar& MainMenuBar();

MenuItem& FileQuit();
MenuItem& FileNewWindow();
MenuItem& FileAboutRavelyn();
MenuItem& FileHelp();
MenuItem& EditUndo();
MenuItem& EditCut();
MenuItem& EditCopy();
MenuItem& EditPaste();
MenuItem& EditClear();
MenuItem& EditSelectAll();
