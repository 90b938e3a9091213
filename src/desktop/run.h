// The program's life on a desktop, from the first window to the last.
#pragma once

class App;
class QtPlatform;

// Starts app and runs its events until the user quits, or the system ends the program: by SIGTERM, SIGINT or
// SIGHUP, or with the desktop session. Each of them ends it in the same order: running commands, windows,
// preferences. Where the screen goes away, the preferences are saved. Gives the exit status. Requires: a
// QApplication; app is on platform.
int run(App& app, QtPlatform& platform);
