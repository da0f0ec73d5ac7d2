// Pager.h: the program through which long output goes.
#pragma once

#include <sys/types.h>

#include <string>

// The shell command of the pager; empty when there is to be none, after a message when the one of $PAGER is missing.
std::string pagerCommand();

// Starts it. Until waitForPager, SIGPIPE, SIGINT and SIGQUIT are ignored: the keys that send them are the pager's.
//
//   input   takes the file descriptor that the pager reads from, to write to
//
// Result:  its process; 0 when it cannot be started.
pid_t startPager(const std::string& command, int& input);

// Waits until the pager is left.
void waitForPager(pid_t pager, int input);
