// kyinventory rm: removes items and parameters of a stored tree.
#include <string>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Terminal.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyEdit.h"

namespace
{
using KyNInventoryKit::Ambiguity;

struct RemoveArguments
{
  std::string file;
  std::vector<std::string> addresses;
  bool all = false;
  TargetOptions target;
};

int remove(const RemoveArguments& arguments)
{
  std::vector<KyCInventoryAddress> addresses;
  for (const std::string& text : arguments.addresses)
  {
    KyCErrorListPool pool;
    addresses.emplace_back();
    const bool isRead = KyNInventoryKit::readAddress(pool, text, addresses.back());
    if (!isRead) return failWith(text, pool, EXIT_USAGE);
  }
  if (!mayStore(arguments.file, arguments.target)) return exitCodeOfRefusal(arguments.file, arguments.target);
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  KyCErrorListPool pool;
  const bool isDone =
      KyNInventoryKit::removeNodes(pool, *tree, addresses, arguments.all ? Ambiguity::REMOVE_ALL : Ambiguity::REFUSED);
  if (!isDone) return failWith(inputName(arguments.file), pool, EXIT_NO);
  return storeTree(arguments.file, *tree, arguments.target);
}
}    // namespace

void addRemoveCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<RemoveArguments>();
  CLI::App* command = program.add_subcommand("rm", "Remove items and parameters of a section file");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("ADDRESS", arguments->addresses, "Items, with all that is in them, and parameters")
      ->required()
      ->check(notEmptyAddress());
  command->add_flag("--all", arguments->all, "Remove everything that an address names, where siblings share it");
  addTargetOptions(*command, arguments->target);
  command->callback([arguments, &exitCode]() { exitCode = remove(*arguments); });
  setManual(
      *command,
      {"The items above what is removed stay, also when they are empty then. The root item cannot be removed. An "
       "address may stand twice, and may name something inside of what another one names.\n\n"
       "The file is written when every address exists, and left as it was otherwise. Exit code 1 when one does not, "
       "or when one names several siblings and --all is not given.",
       {{"kyinventory rm rack.kyinv BOARD[2]/SIZE BOARD[3]",
         "removes the size of the second board, and the third board"}}});
}
