// Where this person's settings lie.
#pragma once

#include <string>

// $XDG_CONFIG_HOME if that is an absolute path, else .config in the home folder; on macOS
// Library/Preferences there. Made, for the person alone, if it is missing; "" if there is none
// and none can be made.
std::string preferencesFolder();
