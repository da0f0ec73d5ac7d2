// kyinventory ids: looks up the predefined IDs.
#include <string>

#include "Command.h"
#include "Json.h"
#include "Output.h"
#include "Table.h"
#include "Terminal.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyIDs.h"

namespace
{
struct IdsArguments
{
  std::string pattern;
  bool json = false;
};

void complainOfNone(const std::string& pattern)
{
  std::string message = pattern + ": no inventory ID matches.";
  const char* separator = " Nearest: ";
  for (const std::string& name : KyNInventoryKit::nearestNames(pattern, 3))
  {
    message += separator + name;
    separator = ", ";
  }
  complain(message);
}

void printJson(Output& out, const std::vector<KyNInventoryKit::NamedID>& found)
{
  out.text("[");
  const char* separator = "\n";
  for (const KyNInventoryKit::NamedID& id : found)
  {
    out.text(separator).text("  {\"name\": ").text(jsonText(id.name));
    out.text(", \"id\": ").text(std::to_string(id.id)).text("}");
    separator = ",\n";
  }
  out.text("\n]\n");
}

int ids(const IdsArguments& arguments)
{
  const std::vector<KyNInventoryKit::NamedID> found = KyNInventoryKit::findIDs(arguments.pattern);
  Output out;
  if (arguments.json)
  {
    printJson(out, found);
  }
  else
  {
    Table table(out, {"NAME", "ID"});
    for (const KyNInventoryKit::NamedID& id : found)
      table.add({id.name, std::to_string(id.id)});
    table.finish();
  }
  const int exitCode = out.finish(found.empty() ? EXIT_NOT_FOUND : EXIT_OK);
  if (exitCode == EXIT_NOT_FOUND) complainOfNone(arguments.pattern);
  return exitCode;
}
}    // namespace

void addIdsCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<IdsArguments>();
  CLI::App* command = program.add_subcommand("ids", "Look up inventory IDs");
  command->add_option("PATTERN", arguments->pattern,
                      "Name with * or ?, part of a name, or number; upper and lower case are the same; default: all");
  command->add_flag("--json", arguments->json, "Print an array of JSON objects");
  command->callback([arguments, &exitCode]() { exitCode = ids(*arguments); });
  setManual(
      *command,
      {"Prints the names of the predefined IDs and their numbers, separated by tabs, in the order of the numbers. Exit "
       "code 1 when none matches; the nearest names are then told on standard error.",
       {{"kyinventory ids 'voltage_*'", "prints the IDs that begin with VOLTAGE_"},
        {"kyinventory ids serial", "prints the IDs whose names contain SERIAL"},
        {"kyinventory ids 585", "prints the ID with the number 585"}}});
}
