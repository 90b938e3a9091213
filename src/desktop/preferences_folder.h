// The folder of the user's settings.
#pragma once

#include <string>

// $XDG_CONFIG_HOME if that is an absolute path, else .config in the home folder. If it is missing it is made,
// with access for the user alone; "" if that fails.
std::string preferencesFolder();
