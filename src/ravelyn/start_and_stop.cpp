// What the program does first and last: the one place that knows every room.

#include "app/App.h"
#include "app/Window1.h"
#include "prefs/prefsModule.h"

void App::Event_Open() {
  Window1::Get().Show();
  prefsModule::getPrefs();
}

void App::Event_Close() { prefsModule::savePrefs(); }
