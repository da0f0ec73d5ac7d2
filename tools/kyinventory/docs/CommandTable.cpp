#include "CommandTable.h"

#include <sstream>

#include "Program.h"

namespace
{
// "TEXT:{json,csv}" names the choices.
std::vector<std::string> choicesIn(const std::string& type)
{
  std::vector<std::string> choices;
  const std::size_t open = type.find('{');
  const std::size_t close = type.find('}');
  if (open == type.npos || close == type.npos) return choices;
  std::istringstream list(type.substr(open + 1, close - open - 1));
  for (std::string choice; std::getline(list, choice, ',');)
    choices.push_back(choice.substr(0, choice.find("->")));    // the names of a map, not what they stand for
  return choices;
}

// "TEXT:MASK" is a MASK; what follows a type otherwise is about its limits.
std::string valueIn(const std::string& type)
{
  const std::size_t colon = type.rfind(':');
  const std::string last = colon == type.npos ? type : type.substr(colon + 1);
  const bool isName = type.compare(0, 5, "TEXT:") == 0 && !last.empty() &&
                      last.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_") == last.npos;
  return isName ? last : type.substr(0, type.find_first_of(": "));
}

OptionRow optionRow(const CLI::Option& option)
{
  OptionRow row;
  for (const std::string& name : option.get_snames())
    row.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    row.names.push_back("--" + name);
  row.meaning = option.get_description();
  row.isRequired = option.get_required();
  if (option.get_items_expected_max() == 0) return row;
  const std::string type = option.get_type_name();
  row.choices = choicesIn(type);
  row.value = valueIn(type);
  if (!row.choices.empty())
    row.completion = Completion::CHOICES;
  else if (row.value == "FILE")
    row.completion = Completion::FILES;
  return row;
}

Completion completionOf(const std::string& argument, bool isFirst)
{
  if (argument.rfind("ADDRESS", 0) == 0) return Completion::ADDRESSES;
  if (argument == "PATTERN") return isFirst ? Completion::NAMES : Completion::ADDRESSES;
  if (argument == "ID") return Completion::NAMES;
  return argument == "CODE" ? Completion::NOTHING : Completion::FILES;
}

CommandRow commandRow(const CLI::App& command, const std::string& name)
{
  CommandRow row;
  row.name = name;
  row.meaning = command.get_description();
  row.manual = manualOf(command);
  for (const CLI::Option* option : command.get_options())
  {
    if (option->get_group().empty()) continue;
    if (!option->get_positional())
    {
      row.options.push_back(optionRow(*option));
      continue;
    }
    const std::string argument = option->get_name(true);
    row.arguments.push_back({argument, option->get_description(), option->get_required(),
                             option->get_items_expected_max() > 1, option->get_items_expected_min() > 1,
                             completionOf(argument, row.arguments.empty())});
  }
  return row;
}
}    // namespace

std::vector<CommandRow> commandTable(const CLI::App& program)
{
  std::vector<CommandRow> table = {commandRow(program, "")};
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; }))
    if (!isHidden(*command)) table.push_back(commandRow(*command, command->get_name()));
  return table;
}
