// kyinventory find: finds items and parameters of a stored tree by the form of their addresses and by values.
#include <string>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Json.h"
#include "Output.h"
#include "Progress.h"
#include "Table.h"
#include "Terminal.h"
#include "inventorykit/KyFind.h"
#include "inventorykit/KyValueText.h"

namespace
{
using KyNInventoryKit::Node;
using KyNInventoryKit::Query;

struct FindArguments
{
  std::string file;
  std::string pattern;
  std::string condition;
  CLI::Option* where = nullptr;
  bool items = false;
  bool parameters = false;
  bool json = false;
};

bool readQuery(const FindArguments& arguments, Query& query)
{
  KyCErrorListPool pool;
  const bool isRead = readPattern(pool, arguments.pattern, query) &&
                      (arguments.where->count() == 0 || readCondition(pool, arguments.condition, query));
  complainAbout("find", pool);
  const bool isEither = arguments.items == arguments.parameters;
  query.findsItems = isEither || arguments.items;
  query.findsParameters = isEither || arguments.parameters;
  return isRead;
}

void printTable(Output& out, const std::vector<Node>& found)
{
  KyNInventoryKit::AddressTexts addresses;
  Table table(out, {"ADDRESS", "VALUE", "UNIT"});
  for (const Node& node : found)
  {
    const bool isItem = node.parameter == nullptr;
    table.add({addresses.of(node), isItem ? "" : KyNInventoryKit::valueText(*node.parameter),
               isItem ? "" : node.parameter->getUnit()});
    if (out.hasFailed()) break;
  }
  table.finish();
}

int find(const FindArguments& arguments)
{
  Query query;
  if (!readQuery(arguments, query)) return EXIT_USAGE;
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;
  const Progress progress("searching " + inputName(arguments.file));
  const std::vector<Node> found = KyNInventoryKit::find(*tree, query);
  Output out;
  if (arguments.json)
    printNodesAsJson(out, found);
  else
    printTable(out, found);
  return out.finish(found.empty() ? EXIT_NOT_FOUND : EXIT_OK);
}
}    // namespace

void addFindCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<FindArguments>();
  CLI::App* command = program.add_subcommand("find", "Find items and parameters of a section file");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("PATTERN", arguments->pattern, "Form of the addresses, such as BOARD[*]/IOCHANNEL[2-8]/VOLTAGE_*")
      ->required()
      ->check(notEmptyAddress());
  arguments->where =
      command->add_option("--where", arguments->condition, "Condition, such as 'VOLTAGE_MAX > 10 and NAME ~ \"^AI\"'");
  command->add_flag("--items", arguments->items, "Find items alone");
  command->add_flag("--parameters", arguments->parameters, "Find parameters alone");
  command->add_flag("--json", arguments->json, "Print everything of what is found as an array of JSON objects");
  command->callback([arguments, &exitCode]() { exitCode = find(*arguments); });
  setManual(
      *command,
      {"Prints address, value and unit of each parameter that is found, separated by tabs, and the address of each "
       "item, in "
       "the order of the tree. A tab, line feed, carriage return or backslash in a value is written as \\t, \\n, \\r "
       "or "
       "\\\\. On a terminal the columns are aligned. Exit code 1 when nothing is found.\n\n"
       "Patterns are elements joined by \"/\". In the name of an ID, \"*\" stands for any characters and \"?\" for "
       "one. "
       "Indices stand in brackets: [2], [1,3,5-7]; [*] is any index, and so is no bracket at all: BOARD stands for "
       "every "
       "board, BOARD[1] for the first one alone. Parameters have the index 1. \"**\" stands for any number of "
       "elements, "
       "none too. \".\" is the root item.\n\n"
       "Conditions compare values of the item that is found, or of the item of the parameter that is found: addresses "
       "relative to it, numbers, versions, and texts in quotes, with ==, !=, <, <=, > and >=; an address ~ \"regular "
       "expression\" asks whether a part of the value has that form; an address alone asks whether it exists; \".\" is "
       "the value of the parameter that is found. They are joined by \"and\", \"or\", \"not\" and brackets. Numbers "
       "are "
       "compared exactly, versions as versions. Nothing is true of a value that is not there.\n\n"
       "Regular expressions: . [abc] [^a-z] \\d \\w \\s \\D \\W \\S * + ? {n,m} ( ) | ^ $.",
       {{"kyinventory find rack.kyinv '**/SERIAL_NUMBER'", "prints every serial number"},
        {"kyinventory find rack.kyinv 'BOARD[2-4]' --items --where 'SLOT_COUNT >= 4'",
         "prints the boards 2 to 4 that have four slots or more"},
        {"kyinventory find rack.kyinv '**/VOLTAGE_*' --where '. > 10'", "prints the voltages above 10"}}});
}
