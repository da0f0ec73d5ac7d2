// kyinventory patch: applies the changes that diff --json has found.
#include <memory>
#include <string>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyPatch.h"
#include "inventorykit/KySectionFile.h"

using KyNInventoryKit::Patch;
using KyNInventoryKit::PatchDirection;

namespace
{
struct PatchArguments
{
  std::string file;
  std::string changes;
  bool isReverse = false;
  bool isDryRun = false;
  TargetOptions target;
};

bool readChanges(const std::string& path, Patch& patch)
{
  KyCErrorListPool pool;
  std::string json;
  const std::string name = inputName(path);
  const Progress progress("reading " + name);
  const bool isRead =
      KyNInventoryKit::readBytes(pool, path, json) && KyNInventoryKit::readPatch(pool, json, name, patch);
  complainAbout(name, pool);
  return isRead;
}

int tryOut(const PatchArguments& arguments, const KyCInventoryItem& root, const Patch& patch, PatchDirection direction)
{
  KyCErrorListPool pool;
  const Progress progress("comparing");
  const bool applies = KyNInventoryKit::checkPatch(pool, root, patch, direction);
  if (!applies) return failWith(inputName(arguments.file), pool, EXIT_NO);
  Output out;
  const std::size_t count = patch.changeCount();
  out.text(count == 1 ? "1 change applies\n" : std::to_string(count) + " changes apply\n");
  return out.finish(EXIT_OK);
}

int apply(const PatchArguments& arguments)
{
  if (isInputTwice({arguments.file, arguments.changes})) return EXIT_USAGE;
  if (!arguments.isDryRun && !mayStore(arguments.file, arguments.target, Lock::LATER))
    return exitCodeOfRefusal(arguments.file, arguments.target);

  Patch patch;
  if (!readChanges(arguments.changes, patch)) return EXIT_INPUT;
  if (!arguments.isDryRun) lockForChange(arguments.file, arguments.target);
  TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  const PatchDirection direction = arguments.isReverse ? PatchDirection::REVERSE : PatchDirection::FORWARD;
  if (arguments.isDryRun) return tryOut(arguments, *tree, patch, direction);
  KyCErrorListPool pool;
  bool isApplied = false;
  {
    const Progress progress("applying the changes");
    isApplied = KyNInventoryKit::applyPatch(pool, tree, patch, direction);
  }
  if (!isApplied) return failWith(inputName(arguments.file), pool, EXIT_NO);
  const bool isUnchanged = patch.changeCount() == 0 && arguments.target.output.empty();
  return isUnchanged ? static_cast<int>(EXIT_OK) : storeTree(arguments.file, *tree, arguments.target);
}
}    // namespace

void addPatchCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<PatchArguments>();
  CLI::App* command = program.add_subcommand("patch", "Apply the changes that diff --json has found");
  command->add_option("FILE", arguments->file, "File with the tree to change; - is standard input")->required();
  command->add_option("DIFF", arguments->changes, "File that diff --json has written; - is standard input")->required();
  command->add_flag("--reverse", arguments->isReverse, "Take the changes back");
  command->add_flag("--dry-run", arguments->isDryRun, "Only tell whether the changes apply; write nothing");
  addTargetOptions(*command, arguments->target);
  command->callback([arguments, &exitCode]() { exitCode = apply(*arguments); });
  setManual(
      *command,
      {"The changes apply wholly or not at all. Before anything is written, everything that DIFF says about the old "
       "tree "
       "is compared with FILE: values, units and the like of what is changed or removed, and that what is added is not "
       "there yet. Each conflict is told with its address. Order never is a conflict: what was added or moved behind "
       "something that FILE does not have goes to the end.\n\n"
       "Without -o, FILE is changed in place; what stands around its section stays. DIFF is the JSON form that diff "
       "--json "
       "writes; the form for people is not read.\n\n"
       "Exit codes: 0 applied (with --dry-run: applies), 1 conflicts, 2 wrong usage, 3 FILE or DIFF cannot be read, 4 "
       "the "
       "result cannot be written.",
       {{"kyinventory patch rack.kyinv changes.json", "applies the changes to rack.kyinv"},
        {"kyinventory patch --reverse rack.kyinv changes.json", "takes them back"},
        {"kyinventory diff --json a.kyinv b.kyinv | kyinventory patch --dry-run rack.kyinv -",
         "tells whether what leads from a to b can be done to rack.kyinv"}}});
}
