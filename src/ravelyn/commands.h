// The one place that knows all commands.
#pragma once

#include "app/Commands.h"

// For App.
extern const Commands kCommands;
