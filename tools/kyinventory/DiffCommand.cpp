// kyinventory diff: what differs between two trees.
#include <algorithm>
#include <memory>
#include <string>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyDiff.h"

using KyNInventoryKit::Change;
using KyNInventoryKit::ChangeCounts;
using KyNInventoryKit::ChangeKind;
using KyNInventoryKit::Difference;

namespace
{
// Addresses are padded to the longest one, but to no more than this.
constexpr std::size_t s_widestAddress = 60;

struct DiffArguments
{
  std::string before;
  std::string after;
  bool isJson = false;
  bool isSummary = false;
  bool withOrder = false;
};

struct Mark
{
  const char* text;
  Style style;
};

Mark markOf(ChangeKind kind)
{
  switch (kind)
  {
    case ChangeKind::ADDED:
      return {"+ ", Style::ADDED};
    case ChangeKind::REMOVED:
      return {"- ", Style::REMOVED};
    case ChangeKind::CHANGED:
      return {"~ ", Style::CHANGED};
    case ChangeKind::MOVED:
      break;
  }
  return {"> ", Style::CHANGED};
}

bool isShown(const Change& change, const DiffArguments& arguments)
{
  return arguments.withOrder || change.kind != ChangeKind::MOVED;
}

std::size_t addressWidth(const Difference& difference, const DiffArguments& arguments)
{
  std::size_t width = 0;
  for (const Change& change : difference.changes())
  {
    if (width == s_widestAddress) break;
    if (isShown(change, arguments))
      width = std::min(s_widestAddress, std::max(width, difference.addressOf(change).size()));
  }
  return width;
}

void printChanges(Output& out, const Difference& difference, const DiffArguments& arguments)
{
  const std::size_t width = addressWidth(difference, arguments);
  for (const Change& change : difference.changes())
  {
    if (!isShown(change, arguments)) continue;
    const Mark mark = markOf(change.kind);
    const std::string address = difference.addressOf(change);
    const std::size_t blanks = address.size() < width ? width - address.size() : 0;
    out.text(mark.text, mark.style).data(address, mark.style).text(std::string(blanks + 2, ' '));
    out.data(KyNInventoryKit::changeText(change)).text("\n");
    if (out.hasFailed()) return;
  }
}

void printCounts(Output& out, const char* name, const ChangeCounts& counts, bool withOrder)
{
  std::string line = name + std::to_string(counts.added) + " added, " + std::to_string(counts.removed) + " removed, " +
                     std::to_string(counts.changed) + " changed";
  if (withOrder) line += ", " + std::to_string(counts.moved) + " moved";
  out.text(line + "\n");
}

int diff(const DiffArguments& arguments)
{
  if (isInputTwice({arguments.before, arguments.after})) return EXIT_USAGE;
  const TreePointer before = readTreeFile(arguments.before);
  const TreePointer after = readTreeFile(arguments.after);
  if (!before || !after) return EXIT_INPUT;

  const Progress progress("comparing");
  const Difference difference = KyNInventoryKit::compareTrees(*before, *after);
  const bool isSame = difference.isEqual() && (!arguments.withOrder || difference.changes().empty());
  Output out;
  if (arguments.isJson)
  {
    out.lines(KyNInventoryKit::differenceToJson(difference));
  }
  else if (arguments.isSummary)
  {
    printCounts(out, "items:      ", difference.items(), arguments.withOrder);
    printCounts(out, "parameters: ", difference.parameters(), arguments.withOrder);
  }
  else
  {
    printChanges(out, difference, arguments);
  }
  return out.finish(isSame ? EXIT_OK : EXIT_NO);
}
}    // namespace

void addDiffCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<DiffArguments>();
  CLI::App* command = program.add_subcommand("diff", "Show what differs between two trees");
  command->add_option("A", arguments->before, "File with the old tree; - is standard input")->required();
  command->add_option("B", arguments->after, "File with the new tree; - is standard input")->required();
  CLI::Option* const json =
      command->add_flag("--json", arguments->isJson, "Print the difference as JSON, for programs and for patch");
  command->add_flag("--summary", arguments->isSummary, "Print only how many items and parameters differ")
      ->excludes(json);
  command->add_flag("--order", arguments->withOrder, "Another order of items or parameters is a difference, too");
  command->callback([arguments, &exitCode]() { exitCode = diff(*arguments); });
  setManual(
      *command,
      {"Items and parameters are compared by their addresses, not by their positions: \"+\" marks what only B has, "
       "\"-\" "
       "what only A has, \"~\" what differs in value, type, unit, modifiable flag, relevance or description. "
       "Everything "
       "below an added or removed item is listed.\n\n"
       "Of several items of one ID and index side by side the first is compared with the first, the second with the "
       "second, and so on; they are shown as BOARD[2], BOARD[2]#2, BOARD[2]#3.\n\n"
       "The order of items and parameters is no difference, unless --order is given: \">\" marks what has moved then. "
       "With --json, moves are listed in any case, so that patch can make B from A exactly. patch reads the JSON form "
       "alone.\n\n"
       "Exit codes: 0 equal, 1 different, 2 wrong usage, 3 a file cannot be read, 4 the output cannot be written or "
       "memory has run out.",
       {{"kyinventory diff old.kyinv new.kyinv", "shows what has changed from old.kyinv to new.kyinv"},
        {"kyinventory diff --json old.kyinv new.kyinv >changes.json", "keeps the changes for kyinventory patch"},
        {"kyinventory scan -o - | kyinventory diff --summary rack.kyinv -",
         "counts what has changed in this machine since rack.kyinv was stored"}}});
}
