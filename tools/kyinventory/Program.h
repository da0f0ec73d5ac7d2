// Program.h: the whole command line: the program with all its sub-commands and options, from which help, man pages and
// completions are made as well.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

// The program; parsing a command line with it runs the sub-command, which stores its exit code.
std::unique_ptr<CLI::App> makeProgram(int& exitCode);

// Parses the command line and runs its sub-command; the exit code of the process.
int runProgram(int argc, char** argv);

// Whether a sub-command is for scripts of the tool's own and not for people.
bool isHidden(const CLI::App& command);

// The paragraphs of a manual's details.
std::vector<std::string> paragraphsOf(const std::string& text);
