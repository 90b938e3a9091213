// Runs the program on a desktop, from the first window to the last.
#pragma once

#include <string>

class App;
class QtPlatform;

// Starts app and delivers its events until the user quits or the system ends the program, by SIGTERM, SIGINT
// or SIGHUP or with the desktop session. Every way ends running commands first, then closes the windows, then
// saves the preferences; if the connection to the screen breaks, only the preferences are saved. A link that
// isn't "" is searched as soon as the first window is shown. Returns the exit status.
// Requires: a QApplication; platform is the host of app.
int run(App& app, QtPlatform& platform, const std::string& link = "");
