// The program's life on a desktop, from the first window to the last.
#pragma once

#include <string>

class App;
class QtPlatform;

// Starts app and runs its events until the user quits, or the system ends the program: by SIGTERM, SIGINT or
// SIGHUP, or with the desktop session. Each of them ends it in the same order: running commands, windows,
// preferences. Where the screen goes away, the preferences are saved. Unless link is "", it is searched as
// soon as the first window stands. Gives the exit status. Requires: a QApplication; app is on platform.
int run(App& app, QtPlatform& platform, const std::string& link = "");
