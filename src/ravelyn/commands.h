// Where all rooms meet.
#pragma once

#include "app/Commands.h"

// The commands of the program, for App.
extern const Commands kCommands;
