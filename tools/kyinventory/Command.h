// Command.h: what the sub-commands share: their exit codes and the way they join the program.
#pragma once

#include <CLI/CLI.hpp>

// Exit codes that scripts rely on.
enum ExitCode
{
  EXIT_OK = 0,
  EXIT_NOT_FOUND = 1,    // what was asked for is not in the tree
  EXIT_REPORTED = 1,     // merge: done, but there was something to report
  EXIT_USAGE = 2,        // the command line is wrong
  EXIT_INPUT = 3,        // the input cannot be read, holds no section, or is damaged
  EXIT_OUTPUT = 4        // the output cannot be written
};

// Each adds its sub-command to the program; when that sub-command is chosen, it runs and stores its exit code.
void addMergeCommand(CLI::App& program, int& exitCode);
void addScanCommand(CLI::App& program, int& exitCode);
void addShowCommand(CLI::App& program, int& exitCode);
void addWatchCommand(CLI::App& program, int& exitCode);
