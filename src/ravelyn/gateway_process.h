// Starts the gateway as a process with a closed list of what it inherits.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// Starts `command`, a program's path and its arguments, in a process group of its own. Its standard input is
// `input`, its output is discarded, and it shares our standard error; `listener` is passed as descriptor 3 as
// a service manager does (LISTEN_FDS and LISTEN_PID). It has no other descriptors, no blocked signals, and
// default handling of the signals that we handle or ignore. -1 on failure; status 127 if the program can't be
// run.
pid_t StartGateway(const std::vector<std::string>& command, int input, int listener);
