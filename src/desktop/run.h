// Runs the program on a desktop, from the first window to the last.
#pragma once

#include <chrono>
#include <string>

class App;
class QtPlatform;

// After this time the first window has been drawn, and what it did not need is loaded and started.
inline constexpr std::chrono::milliseconds kAfterTheWindow{200};

// Starts app and delivers its events until the user quits or the system ends the program, by SIGTERM, SIGINT
// or SIGHUP or with the desktop session. Every way ends running commands first, then closes the windows, then
// saves the preferences; if the connection to the screen breaks, only the preferences are saved. A link that
// isn't "" is searched as soon as the first window is shown; the windows get their icon later. Returns the
// exit status.
// Requires: a QApplication; platform is the host of app.
int run(App& app, QtPlatform& platform, const std::string& link = "");
