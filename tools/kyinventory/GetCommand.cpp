// kyinventory get: prints values of a stored tree.
#include <string>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Json.h"
#include "Output.h"
#include "Table.h"
#include "Terminal.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyValueText.h"

namespace
{
using KyNInventoryKit::Node;

struct GetArguments
{
  std::string file;
  std::vector<std::string> addresses;
  bool type = false;
  bool unit = false;
  bool all = false;
  bool json = false;
};

bool readAddresses(const std::vector<std::string>& texts, std::vector<KyCInventoryAddress>& addresses)
{
  for (const std::string& text : texts)
  {
    KyCErrorListPool pool;
    addresses.emplace_back();
    const bool isRead = KyNInventoryKit::readAddress(pool, text, addresses.back());
    complainAbout(text, pool);
    if (!isRead) return false;
  }
  return true;
}

// The parameters of the node: itself, or all of an item.
void addParameters(const Node& node, std::vector<Node>& parameters)
{
  if (node.parameter != nullptr)
  {
    parameters.push_back(node);
    return;
  }
  for (KyCInventoryParameter* p = node.item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    parameters.push_back({node.item, p});
}

// Everything of a parameter but its address.
std::vector<std::string> columnsOf(const KyCInventoryParameter& parameter, const GetArguments& arguments)
{
  std::vector<std::string> columns = {KyNInventoryKit::valueText(parameter)};
  if (arguments.type || arguments.all) columns.push_back(parameter.getTypeAsCString());
  if (arguments.unit || arguments.all) columns.push_back(parameter.getUnit());
  if (!arguments.all) return columns;
  columns.push_back(parameter.isModifiable() ? "yes" : "no");
  columns.push_back(std::to_string(parameter.getRelevance()));
  columns.push_back(parameter.getDescription());
  return columns;
}

std::vector<std::string> headingsOf(const GetArguments& arguments, bool hasAddress)
{
  std::vector<std::string> headings;
  if (hasAddress) headings.push_back("ADDRESS");
  headings.push_back("VALUE");
  if (arguments.type || arguments.all) headings.push_back("TYPE");
  if (arguments.unit || arguments.all) headings.push_back("UNIT");
  if (arguments.all) headings.insert(headings.end(), {"MODIFIABLE", "RELEVANCE", "DESCRIPTION"});
  return headings;
}

void printTable(Output& out, const std::vector<Node>& parameters, const GetArguments& arguments, bool hasAddress)
{
  KyNInventoryKit::AddressTexts addresses;
  Table table(out, headingsOf(arguments, hasAddress));
  for (const Node& node : parameters)
  {
    std::vector<std::string> row = columnsOf(*node.parameter, arguments);
    if (hasAddress) row.insert(row.begin(), addresses.of(node));
    table.add(std::move(row));
    if (out.hasFailed()) break;
  }
  table.finish();
}

void printValues(Output& out, const std::vector<Node>& parameters)
{
  for (const Node& node : parameters)
    out.data(KyNInventoryKit::valueText(*node.parameter), Style::VALUE).text("\n");
}

int get(const GetArguments& arguments)
{
  std::vector<KyCInventoryAddress> addresses;
  if (!readAddresses(arguments.addresses, addresses)) return EXIT_USAGE;
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  KyCErrorListPool pool;
  std::vector<Node> parameters;
  bool hasAddress = arguments.all;
  for (const KyCInventoryAddress& address : addresses)
  {
    const Node node = KyNInventoryKit::lookUp(pool, *tree, address);
    if (node.item == nullptr) continue;
    hasAddress = hasAddress || node.parameter == nullptr;
    addParameters(node, parameters);
  }
  Output out;
  if (arguments.json)
    printNodesAsJson(out, parameters);
  else if (hasAddress || arguments.type || arguments.unit)
    printTable(out, parameters, arguments, hasAddress);
  else
    printValues(out, parameters);
  const int exitCode = out.finish(pool.getErrorCount() == 0 ? EXIT_OK : EXIT_NOT_FOUND);
  complainAbout(inputName(arguments.file), pool);
  return exitCode;
}
}    // namespace

void addGetCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<GetArguments>();
  CLI::App* command = program.add_subcommand("get", "Print values of a section file");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command
      ->add_option("ADDRESS", arguments->addresses,
                   "Parameters, such as BOARD[2]/SIZE, or items: all parameters of each")
      ->required()
      ->check(notEmptyAddress());
  command->add_flag("--type", arguments->type, "Print the type behind each value");
  command->add_flag("--unit", arguments->unit, "Print the unit behind each value");
  command->add_flag("--all", arguments->all,
                    "Print address, value, type, unit, modifiable flag, relevance and description");
  command->add_flag("--json", arguments->json, "Print everything of each parameter as an array of JSON objects");
  command->callback([arguments, &exitCode]() { exitCode = get(*arguments); });
  setManual(
      *command,
      {"Prints the values of parameters, one a line, in the order of the command line. Where an address names an item, "
       "all its parameters are printed, and every line begins with an address. \".\" is the root item.\n\n"
       "A value that stands alone in its line is printed byte by byte. With several columns they are separated by "
       "tabs; a tab, line feed, carriage return or backslash in a value is then written as \\t, \\n, \\r or \\\\. On "
       "a terminal columns are aligned, and control characters are shown as \\xNN.\n\n"
       "Exit code 1 when an address does not exist; the nearest existing ones are named, and the values of the "
       "others are printed all the same. What is no address, such as a misspelled ID, is wrong usage: exit code 2, "
       "and nothing is read or printed.",
       {{"kyinventory get rack.kyinv BOARD[2]/SIZE", "prints the size of the second board"},
        {"kyinventory get rack.kyinv BOARD/SIZE --unit", "prints it with its unit"},
        {"kyinventory get rack.kyinv BOARD --all", "prints everything of all parameters of the first board"}}});
}
