// Program.h: the whole command line: the program with all its sub-commands and options, from which help, man pages and
// completions are made as well.
#pragma once

#include <memory>

#include "Command.h"

// The program; parsing a command line with it runs the sub-command, which stores its exit code.
std::unique_ptr<CLI::App> makeProgram(int& exitCode);
