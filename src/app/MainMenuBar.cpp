#include "app/MainMenuBar.h"

#include <algorithm>

namespace {

Menu& MenuOf(const std::string& name) { return *std::ranges::find(MainMenuBar().Menus, name, &Menu::Name); }

}  // namespace

MenuBar& MainMenuBar() {
  static MenuBar bar{{
      {"FileMenu",
       "&File",
       {
           QuitMenuItem("FileQuit", "&Quit", "Cmd+Q"),
           {"FileNewWindow", "New Window", "Cmd+N"},
           {"FileAboutRavelyn", "About Ravelyn", ""},
           {.Name = "FileHelp", .Caption = "Help", .ShowsHelp = true},
       }},
      {"EditMenu",
       "&Edit",
       {
           {"EditUndo", "&Undo", "Cmd+Z", EditAction::Undo},
           {"EditSeparator1", "-", ""},
           {"EditCut", "Cu&t", "Cmd+X", EditAction::Cut},
           {"EditCopy", "&Copy", "Cmd+C", EditAction::Copy},
           {"EditPaste", "&Paste", "Cmd+V", EditAction::Paste},
           {"EditClear", "&Delete", "", EditAction::Clear},
           {"EditSeparator2", "-", ""},
           {"EditSelectAll", "Select &All", "Cmd+A", EditAction::SelectAll},
       }},
  }};
  return bar;
}

Menu& FileMenu() { return MenuOf("FileMenu"); }
Menu& EditMenu() { return MenuOf("EditMenu"); }
MenuItem& FileQuit() { return *MainMenuBar().Find("FileQuit"); }
MenuItem& FileNewWindow() { return *MainMenuBar().Find("FileNewWindow"); }
MenuItem& FileAboutRavelyn() { return *MainMenuBar().Find("FileAboutRavelyn"); }
MenuItem& FileHelp() { return *MainMenuBar().Find("FileHelp"); }
MenuItem& EditUndo() { return *MainMenuBar().Find("EditUndo"); }
MenuItem& EditSeparator1() { return EditMenu().Items.at(1); }
MenuItem& EditCut() { return *MainMenuBar().Find("EditCut"); }
MenuItem& EditCopy() { return *MainMenuBar().Find("EditCopy"); }
MenuItem& EditPaste() { return *MainMenuBar().Find("EditPaste"); }
MenuItem& EditClear() { return *MainMenuBar().Find("EditClear"); }
MenuItem& EditSeparator2() { return EditMenu().Items.at(6); }
MenuItem& EditSelectAll() { return *MainMenuBar().Find("EditSelectAll"); }
