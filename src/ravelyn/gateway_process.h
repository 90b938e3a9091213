// Starting the gateway as a process: what it inherits, and nothing else.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// Starts command, a program's path and its arguments, in a process group of its own. Its standard input is
// input, its output is dropped, its messages go where ours go; listener is handed over as descriptor 3 in
// the way of the service manager (LISTEN_FDS and LISTEN_PID). It has no other descriptor, no
// signal is blocked in it, and those that we take or ignore have their usual effect. -1 if there is no
// process; a program that can't be run ends with status 127.
pid_t StartGateway(const std::vector<std::string>& command, int input, int listener);
