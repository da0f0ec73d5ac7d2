// kyinventory show: prints a stored tree, or one item or parameter of it.
#include <charconv>
#include <string>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Numbers.h"
#include "SharedView.h"
#include "Terminal.h"
#include "TreeText.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyLookUp.h"

namespace
{
// Bits of the dump's option mask that the command sets itself.
constexpr int optionPlain = 0x80;
constexpr int largestMask = 0x3FFFFF;         // every bit that the dump knows
constexpr int optionDescriptions = 0x4800;    // of items and parameters

constexpr unsigned int s_mostLevels = 1000000000;
constexpr unsigned int s_mostIndentation = 1000;

struct ShowArguments
{
  std::string file;
  std::string address;
  bool plain = false;
  bool shared = false;
  std::string options = "0";
  std::string depth;    // levels of sub-items to show; empty: all
  std::string indent = "0";
};

// Of an option that was checked.
int numberOf(const std::string& text, unsigned int highest)
{
  return static_cast<int>(parseWholeNumber(text, 0, highest).value_or(0));
}

// Takes away everything more than `depth` levels below the item. The tree is the command's own.
void cutBelow(KyCInventoryItem& top, int depth)
{
  KyCInventoryItem* item = &top;
  int level = 0;
  while (item != nullptr)
  {
    if (level == depth)
    {
      while (KyCInventoryItem* child = item->getFirstSubItem())
      {
        child->detach();
        delete child;
      }
    }
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      ++level;
      continue;
    }
    while (item != &top && item->getNext() == nullptr)
    {
      item = item->getParent();
      --level;
    }
    item = item == &top ? nullptr : item->getNext();
  }
}

// Decimal, or hexadecimal with 0x in front; a leading 0 alone means nothing special. -1 when the text is no option mask.
int parseMask(const std::string& text)
{
  const bool isHex = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
  const char* const first = text.c_str() + (isHex ? 2 : 0);
  const char* const last = text.c_str() + text.size();
  int mask = 0;
  const auto [end, error] = std::from_chars(first, last, mask, isHex ? 16 : 10);
  return error == std::errc() && end == last && mask >= 0 && mask <= largestMask ? mask : -1;
}

int show(const ShowArguments& arguments)
{
  const int mask =
      parseMask(arguments.options) | (arguments.plain ? optionPlain : 0) | (arguments.shared ? optionDescriptions : 0);
  KyCErrorListPool pool;
  KyCInventoryAddress address;
  const bool isRead = KyNInventoryKit::readAddress(pool, arguments.address, address);
  complainAbout(arguments.address, pool);
  if (!isRead) return EXIT_USAGE;

  TreePointer tree = readTreeFile(arguments.file);
  if (tree && arguments.shared) tree = withSharedData(*tree, inputName(arguments.file));
  if (!tree) return EXIT_INPUT;
  KyCInventoryItem* item = tree->getItem(address);
  if (item != nullptr)
  {
    if (!arguments.depth.empty()) cutBelow(*item, numberOf(arguments.depth, s_mostLevels));
    Output out;
    return printTree(out, *item, mask, numberOf(arguments.indent, s_mostIndentation));
  }
  const KyCInventoryParameter* const parameter = KyNInventoryKit::lookUp(pool, *tree, address).parameter;
  if (parameter != nullptr)
  {
    Output out;
    return printParameter(out, *parameter, mask, numberOf(arguments.indent, s_mostIndentation));
  }
  complainAbout(inputName(arguments.file), pool);
  return EXIT_NOT_FOUND;
}

// As docs/text-dump.md has them.
constexpr const char* s_dumpOptions =
    "  0x1       parameters, values and sub-items stay at the item's depth\n"
    "  0x2       the unit line also when the unit is empty\n"
    "  0x4       the index of an item's ID also when it is 1\n"
    "  0x8       no parameters\n"
    "  0x10      neither head nor closing line of items; parameters and sub-items stay\n"
    "  0x20      .2 instead of [2]\n"
    "  0x40      IDs as decimal numbers instead of names\n"
    "  0x80      plain mode: no marks\n"
    "  0x100     string values with line feeds as they are\n"
    "  0x200     item head without the ID\n"
    "  0x400     item head never with the description; wins over 0x800\n"
    "  0x800     item head always with the description\n"
    "  0x1000    parameter head without the ID\n"
    "  0x2000    parameter head never with the description; wins over 0x4000\n"
    "  0x4000    parameter head always with the description\n"
    "  0x8000    parameter head without the type\n"
    "  0x10000   no value line\n"
    "  0x20000   no unit line\n"
    "  0x40000   no modifiable line\n"
    "  0x80000   no relevance line\n"
    "  0x100000  string values without escaping\n"
    "  0x200000  an ID without a registered name as its number instead of its description";

// Empty when the text is an option mask.
std::string checkMask(const std::string& text)
{
  return parseMask(text) >= 0 ? "" : "must be a number from 0 to 0x3FFFFF, decimal or with 0x in front";
}
}    // namespace

void addShowCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ShowArguments>();
  CLI::App* command = program.add_subcommand("show", "Print the tree of a section file");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command
      ->add_option("ADDRESS", arguments->address, "Item or parameter to print, such as CPU[2]/L1_CACHE; default: all")
      ->check(notEmptyAddress());
  command->add_flag("--plain", arguments->plain, "No mark-up: values and names alone, separated by blanks");
  command->add_flag(
      "--shared", arguments->shared,
      "Link shared data first, and print with each item what it has from there, described as \"shared: ...\"");
  command->add_option("--options", arguments->options, "Option mask of the text dump, such as 0xC0000")
      ->check(checkMask, "MASK");
  command->add_option("--depth", arguments->depth, "Levels of sub-items to print; 0: the item alone; default: all")
      ->check(wholeNumber(0, s_mostLevels))
      ->type_name("UINT");
  command->add_option("--indent", arguments->indent, "Levels by which everything is indented")
      ->check(wholeNumber(0, s_mostIndentation))
      ->type_name("UINT");
  setManual(
      *command,
      {std::string("The text is that of the library's dump. On a terminal, control characters of the file's texts "
                   "are shown as \\xNN; elsewhere every byte is printed as it is stored.\n\n"
                   "The mask of --options is the sum of these:\n\n") +
           s_dumpOptions,
       {{"kyinventory show rack.kyinv", "prints the whole tree"},
        {"kyinventory show rack.kyinv BOARD[2] --depth 1", "prints the second board and what is right below it"},
        {"kyinventory show rack.kyinv BOARD[2]/SIZE --plain", "prints one parameter, without mark-up"}}});
  command->callback([arguments, &exitCode]() { exitCode = show(*arguments); });
}
