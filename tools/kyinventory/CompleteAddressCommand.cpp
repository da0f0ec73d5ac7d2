// kyinventory complete-address: what the completions of the command-line shells ask for. It is for them alone, and says
// nothing but what they can use.
#include "Command.h"
#include "Output.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KySession.h"

namespace
{
int completeAddress(const std::string& file, const std::string& begun)
{
  KyCErrorListPool ignored;
  Output out;
  if (file.empty())
  {
    for (const std::string& name : KyNInventoryKit::completeName(begun))
      out.data(name).text("\n");
    return out.finish(EXIT_OK);
  }
  const KyNInventoryKit::TreePointer tree = file == "-" ? nullptr : KyNInventoryKit::readTree(ignored, file);
  if (!tree) return EXIT_INPUT;
  for (const std::string& address : KyNInventoryKit::completeAddress(*tree, begun))
    out.data(address).text("\n");
  return out.finish(EXIT_OK);
}
}    // namespace

void addCompleteAddressCommand(CLI::App& program, int& exitCode)
{
  struct Arguments
  {
    std::string file;
    std::string begun;
  };
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = program.add_subcommand("complete-address", "")->group("");
  command->add_option("FILE", arguments->file)->required();
  command->add_option("BEGUN", arguments->begun)->required();
  command->callback([arguments, &exitCode]() { exitCode = completeAddress(arguments->file, arguments->begun); });
}
