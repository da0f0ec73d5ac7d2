// Command.h: what the sub-commands share: their manual and the way they join the program.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "ExitCode.h"

// What the manual says about a sub-command beyond its options.
struct Manual
{
  struct Example
  {
    std::string command;    // "kyinventory get rack.kyinv BOARD[2]/SIZE"
    std::string meaning;    // "prints the size of the second board"
  };
  std::string details;    // paragraphs, separated by empty lines; one that begins with a blank keeps its lines
  std::vector<Example> examples;
};

// Each adds its sub-command to the program; when that sub-command is chosen, it runs and stores its exit code.
void addAnonymizeCommand(CLI::App& program, int& exitCode);
void addAppendCommand(CLI::App& program, int& exitCode);
void addCheckCommand(CLI::App& program, int& exitCode);
void addCompleteAddressCommand(CLI::App& program, int& exitCode);
void addDiffCommand(CLI::App& program, int& exitCode);
void addExplainCommand(CLI::App& program, int& exitCode);
void addExportCommand(CLI::App& program, int& exitCode);
void addExtractCommand(CLI::App& program, int& exitCode);
void addFindCommand(CLI::App& program, int& exitCode);
void addGetCommand(CLI::App& program, int& exitCode);
void addIdsCommand(CLI::App& program, int& exitCode);
void addImportCommand(CLI::App& program, int& exitCode);
void addInspectCommand(CLI::App& program, int& exitCode);
void addMergeCommand(CLI::App& program, int& exitCode);
void addPatchCommand(CLI::App& program, int& exitCode);
void addRemoveCommand(CLI::App& program, int& exitCode);
void addRenameCommand(CLI::App& program, int& exitCode);
void addScanCommand(CLI::App& program, int& exitCode);
void addSetCommand(CLI::App& program, int& exitCode);
void addShellCommand(CLI::App& program, int& exitCode);
void addShowCommand(CLI::App& program, int& exitCode);
void addStripCommand(CLI::App& program, int& exitCode);
void addWatchCommand(CLI::App& program, int& exitCode);

// Keeps the manual of a sub-command, for its help and its man page. Each add function calls it once.
//
// Help, man pages and completions all come from the command's options. What they are named decides what is completed:
// a positional argument whose name begins with ADDRESS or is PATTERN by the addresses in the FILE in front of it (in
// front of all others PATTERN, and ID, by predefined IDs), a CODE by nothing, any other by files; an option by the
// choices of CLI::IsMember, or by files when its type_name is FILE.
void setManual(const CLI::App& command, Manual manual);
const Manual& manualOf(const CLI::App& command);    // empty when none was set
