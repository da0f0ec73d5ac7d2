// kyinventory rename: gives an item of a stored tree another ID.
#include <string>

#include "Command.h"
#include "Files.h"
#include "Terminal.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyEdit.h"

namespace
{
struct RenameArguments
{
  std::string file;
  std::string address;
  std::string id;
  TargetOptions target;
};

// What a file is not needed for: whether an item can have the ID at all.
bool isPossibleID(KyCErrorListPool& pool, const KyCInventoryAddress& id)
{
  KyCInventoryItem item(pool, KyNInventoryIDs::ROOT, "");
  return KyNInventoryKit::renameItem(pool, item, KyCInventoryAddress(), id);
}

int rename(const RenameArguments& arguments)
{
  KyCErrorListPool usage;
  KyCInventoryAddress address;
  KyCInventoryAddress id;
  const bool isRead = KyNInventoryKit::readAddress(usage, arguments.address, address) &&
                      KyNInventoryKit::readElement(usage, arguments.id, id) && isPossibleID(usage, id);
  if (!isRead) return failWith("rename", usage, EXIT_USAGE);
  if (!mayStore(arguments.file, arguments.target)) return exitCodeOfRefusal(arguments.file, arguments.target);
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  KyCErrorListPool pool;
  const bool isDone = KyNInventoryKit::renameItem(pool, *tree, address, id);
  if (!isDone) return failWith(inputName(arguments.file), pool, EXIT_NO);
  return storeTree(arguments.file, *tree, arguments.target);
}
}    // namespace

void addRenameCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<RenameArguments>();
  CLI::App* command = program.add_subcommand("rename", "Give an item of a section file another ID or index");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("ADDRESS", arguments->address, "Item, such as BOARD[2]/DEVICE")
      ->required()
      ->check(notEmptyAddress());
  command
      ->add_option("ID", arguments->id,
                   "Its new ID, predefined, by its name or number, with an index where it is not 1: IOCHANNEL[3]")
      ->required()
      ->check(notEmpty());
  addTargetOptions(*command, arguments->target);
  command->callback([arguments, &exitCode]() { exitCode = rename(*arguments); });
  setManual(
      *command,
      {"The item stays where it is in its parent's list, and keeps everything that is in it; its description becomes "
       "the name of the new ID. Of several siblings that share the address, the first one is renamed.\n\n"
       "Exit code 1 when there is no such item, or when its parent has an item or a parameter of the new ID already; "
       "the file is then left as it was.",
       {{"kyinventory rename rack.kyinv BOARD[2] BOARD[5]", "makes the second board the fifth one"}}});
}
