// CommandTable.h: the program's command line as plain tables, for man pages and completions.
#pragma once

#include <string>
#include <vector>

#include "Command.h"

// What is offered for a word.
enum class Completion
{
  NOTHING,
  FILES,
  ADDRESSES,    // of the file in front
  NAMES,        // predefined IDs
  CHOICES
};

struct OptionRow
{
  std::vector<std::string> names;    // "-o", "--output"
  std::string value;                 // what stands behind it: "FILE"; empty: nothing
  std::vector<std::string> choices;
  std::string meaning;
  bool isRequired = false;
  Completion completion = Completion::NOTHING;
};

struct ArgumentRow
{
  std::string name;
  std::string meaning;
  bool isRequired = false;
  bool isMany = false;
  bool isTwice = false;    // must be given twice or more
  Completion completion = Completion::NOTHING;
};

struct CommandRow
{
  std::string name;    // empty: the program itself
  std::string meaning;
  std::vector<ArgumentRow> arguments;
  std::vector<OptionRow> options;
  Manual manual;
};

// The program, and then its sub-commands in the order of its help; without hidden ones.
std::vector<CommandRow> commandTable(const CLI::App& program);
