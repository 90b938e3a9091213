#include "app/MainMenuBar.h"

namespace {

Menu FileMenu() {
  return {"FileMenu",
          "&File",
          {
              QuitMenuItem("FileQuit", "&Quit", "Cmd+Q"),
              {"FileNewWindow", "New Window", "Cmd+N"},
              {"FileAboutRavelyn", "About Ravelyn", ""},
              {"FileHelp", "Help", ""},
          }};
}

Menu EditMenu() {
  return {"EditMenu",
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
          }};
}

}  // namespace

MenuBar& MainMenuBar() {
  static MenuBar bar{{FileMenu(), EditMenu()}};
  return bar;
}

MenuItem& FileQuit() { return *MainMenuBar().Find("FileQuit"); }
MenuItem& FileNewWindow() { return *MainMenuBar().Find("FileNewWindow"); }
MenuItem& FileAboutRavelyn() { return *MainMenuBar().Find("FileAboutRavelyn"); }
MenuItem& FileHelp() { return *MainMenuBar().Find("FileHelp"); }
MenuItem& EditUndo() { return *MainMenuBar().Find("EditUndo"); }
MenuItem& EditCut() { return *MainMenuBar().Find("EditCut"); }
MenuItem& EditCopy() { return *MainMenuBar().Find("EditCopy"); }
MenuItem& EditPaste() { return *MainMenuBar().Find("EditPaste"); }
MenuItem& EditClear() { return *MainMenuBar().Find("EditClear"); }
MenuItem& EditSelectAll() { return *MainMenuBar().Find("EditSelectAll"); }
