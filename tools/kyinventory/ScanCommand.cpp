// kyinventory scan: takes the inventory of a machine.
#include <unistd.h>

#include <string>

#include "AnonymizeOptions.h"
#include "Command.h"
#include "Files.h"
#include "Progress.h"
#include "Terminal.h"
#include "TreeText.h"
#ifdef KY_HAVE_HOST
#include "inventoryhost/KyNInventoryHost.h"
#endif

namespace
{
struct ScanArguments
{
  std::string topology;
  TargetOptions target;
  bool isAnonymous = false;
  KeyOptions key;
};

#ifdef KY_HAVE_HOST
KyCInventoryItem* takeInventory(KyCErrorListPool& pool, const std::string& topology)
{
  if (topology.empty()) return KyNInventoryHost::scanMachine(pool);
  if (topology == "-") return KyNInventoryHost::scanTopologyStream(pool, STDIN_FILENO, "standard input");
  return KyNInventoryHost::scanTopologyFile(pool, topology.c_str());
}

TreePointer takeInventory(const std::string& topology)
{
  KyCErrorListPool pool;
  TreePointer tree;
  {
    const Progress progress("taking the inventory");
    tree.reset(takeInventory(pool, topology));
  }
  complainAbout(topology.empty() ? "this machine" : inputName(topology), pool);
  return tree;
}

// The bytes were found to read back equal before they were written; this asks the same of the file.
bool storeAndVerify(const TargetOptions& target, KyCInventoryItem& tree)
{
  const std::string& path = target.output;
  if (storeTree("", tree, target) != EXIT_OK) return false;
  if (!isReadableAgain(path)) return true;
  const TreePointer stored = readTreeFile(path);
  if (!stored) return false;
  const std::string difference = KyNInventoryKit::firstDifference(tree, *stored);
  if (!difference.empty())
  {
    complain(path + ": does not read back equal at " + difference);
    return false;
  }
  const KyNInventoryKit::TreeSize size = KyNInventoryKit::measure(tree);
  complain("stored " + std::to_string(size.items) + " items with " + std::to_string(size.parameters) +
           " parameters in " + path + "; read back equal");
  return true;
}

int scan(const ScanArguments& arguments)
{
  if (isInputTwice({arguments.topology, arguments.key.file})) return EXIT_USAGE;
  if (isOutputAnInput({arguments.topology, arguments.key.file}, arguments.target)) return EXIT_USAGE;
  if (!mayStore("", arguments.target)) return exitCodeOfRefusal("", arguments.target);
  std::string key;
  if (arguments.isAnonymous && !readKey(arguments.key, key)) return EXIT_INPUT;
  TreePointer tree = takeInventory(arguments.topology);
  if (tree && arguments.isAnonymous) tree = anonymized(*tree, key);
  if (!tree) return EXIT_INPUT;
  if (!arguments.target.output.empty()) return storeAndVerify(arguments.target, *tree) ? EXIT_OK : EXIT_OUTPUT;
  Output out;
  return printTree(out, *tree, 0, 0);
}
#else
int scan(const ScanArguments&)
{
  complain("this build cannot take inventories: the hwloc library was not there when it was built");
  return EXIT_INPUT;
}
#endif
}    // namespace

void addScanCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ScanArguments>();
  CLI::App* command =
      program.add_subcommand("scan", "Take the inventory of this machine, or of one described in a file");
  command
      ->add_option("--topology", arguments->topology,
                   "hwloc topology file (XML) to take instead of this machine; - is standard input")
      ->check(notEmpty())
      ->type_name("FILE");
  addTargetOptions(
      *command, arguments->target,
      "Store the tree as a section file, read it back and compare; - is standard output; default: print it");
  CLI::Option* const anonymize = command->add_flag(
      "--anonymize", arguments->isAnonymous,
      "Put pseudonyms in place of serial numbers, MAC and IP addresses, UUIDs, asset tags and host names");
  addKeyOptions(*command, arguments->key, anonymize);
  setManual(*command,
            {"Takes the inventory of the machine that the program runs on: processors, caches, memory, buses, devices, "
             "network interfaces, disks and the operating system. Some serial numbers are shown to root only.\n\n"
             "A program that was built without the hwloc library takes no inventories: it says so, with exit code 3.",
             {{"kyinventory scan", "prints the inventory of this machine"},
              {"kyinventory scan -o machine.kyinv", "stores it in a file"},
              {"kyinventory scan --topology rack.xml -o rack.kyinv",
               "stores the inventory of a machine that lstopo has described"},
              {"lstopo --of xml | kyinventory scan --topology -", "prints what lstopo says of a machine"}}});
  command->callback([arguments, &exitCode]() { exitCode = scan(*arguments); });
}
