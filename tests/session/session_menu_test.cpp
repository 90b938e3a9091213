// The menus, and which window handles them.

#include "support/SessionDriver.h"

TEST(Menu, HelpOpensThePageOfTheActiveWindow) {
  SessionDriver driver;
  const std::pair<const char*, const char*> rows[] = {
      {"open", ""},
      {"menu FileAboutRavelyn", "#help"},
      {"activate Window1", ""},
      {"activate aboutWin\nclick lineBox", "#help"},  // a click that does nothing activates no window
      {"click openBox", ""},
      {"activate aboutWin\nmenu FileNewWindow", ""},
      {"close Window1\nclose aboutWin", "#help"},
  };
  for (const auto& [actions, place] : rows) {
    driver.Run(actions);
    EXPECT_EQ(driver.Run("menu FileHelp"),
              Lines{Browsed("http://www.tarnvale.com/ravelyn" + std::string(place))});
  }
  EXPECT_EQ(driver.State()["active"], nullptr);
}

TEST(Menu, MakesOneWindowOfEachKindAndAnotherAfterItWasClosed) {
  SessionDriver driver;
  driver.Run("open\ntype TextField1 x\nclick SRTBox\nresize Window1 -7 99999999999");
  EXPECT_EQ(driver.Run("menu FileAboutRavelyn\nclick Canvas1\nmenu FileNewWindow"),
            (Lines{Shown("aboutWin"), Shown("aboutWin"), Shown("Window1")}));
  const auto windows = driver.State()["windows"];
  const auto& form = windows["Window1"];
  EXPECT_EQ(windows.size(), 2u);
  EXPECT_EQ(form["width"].dump() + " " + form["height"].dump(), "64 32000");
  EXPECT_EQ(form["controls"]["TextField1"]["text"], "x");
  EXPECT_EQ(driver.Run("click aboutWin.BevelButton1\nclose Window1\nmenu FileNewWindow"),
            (Lines{Closed("aboutWin"), Closed("Window1"), Shown("Window1")}));
  // A new form starts from its layout; the program keeps the options.
  const auto state = driver.State();
  EXPECT_EQ(state["windows"].size(), 1u);
  EXPECT_EQ(state["windows"]["Window1"]["controls"]["TextField1"]["text"], "");
  EXPECT_EQ(state["windows"]["Window1"]["controls"]["SRTBox"]["value"], false);
  EXPECT_EQ(state["app"]["checkedDL"], "SRT");
}

TEST(Menu, QuitSavesAndEndsTheProgram) {
  SessionDriver driver;
  EXPECT_EQ(driver.Run("open\nclick Canvas1\nclick SRTBox\nmenu FileQuit\nmenu FileHelp"),
            (Lines{Shown("Window1"), Shown("aboutWin"), Refused(5, "the program has quit")}));
  EXPECT_EQ(ReadFile(driver.prefs / "com.tarnvale.ravelyn.user.prefs"), "SRT\ntrue\nfalse\nfalse\nfalse\n");
}

TEST(Menu, EditActsOnTheFocusedTextField) {
  SessionDriver driver;
  driver.Run("open");
  const std::pair<const char*, const char*> rows[] = {
      {"menu EditPaste", ""},  // nothing has the focus
      {"type searchField word\nmenu EditSelectAll\nmenu EditCopy\nmenu EditPaste\nmenu EditPaste",
       "wordword"},
      {"menu EditUndo", "word"},
      {"menu EditSelectAll\nmenu EditCut", ""},
      {"menu EditPaste\nmenu EditPaste\nmenu EditPaste", "wordwordword"},
      {"menu EditSelectAll\nmenu EditClear", ""},
      {"type TextField1 link\nmenu EditSelectAll\nmenu EditCut", ""},
      {"type searchField\nmenu EditPaste", "link"},
  };
  for (const auto& [actions, text] : rows) {
    EXPECT_EQ(driver.Run(actions), Lines{});
    EXPECT_EQ(driver.State()["windows"]["Window1"]["controls"]["searchField"]["text"], text) << actions;
  }
}
