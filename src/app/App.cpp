#include "app/App.h"

#include "app/FileTypes1.h"
#include "app/MainMenuBar.h"
#include "app/Window1.h"
#include "app/aboutWin.h"

App::App(Platform& host, const Commands& all, Endpoints where)
    : Application(host), commands(all), endpoints(std::move(where)) {
  FileTypes1::SetUp();
  SetMenuBar(MainMenuBar());
  AddMenuHandler("FileNewWindow", [this] { return _FileNewWindow_Action(); });
  AddMenuHandler("FileAboutRavelyn", [this] { return _FileAboutRavelyn_Action(); });
  AddMenuHandler("FileHelp", [this] { return _FileHelp_Action(); });
}

void App::Event_Open() {
  Window1::Get().Show();
  commands.getPrefs();
}

void App::Event_Close() { commands.savePrefs(); }

void App::Event_CommandBegins() { progress = {.begun = Ticks()}; }

std::string App::CommandOutcome(bool wasStopped) const { return progress.Words(wasStopped, Ticks()); }

bool App::_FileNewWindow_Action() {
  Window1::Get().Show();
  return false;
}

bool App::_FileAboutRavelyn_Action() {
  aboutWin::Get().Show();
  return false;
}

bool App::_FileHelp_Action() {
  ShowURL("http://" + endpoints.ProductPage + "#help");
  return false;
}
