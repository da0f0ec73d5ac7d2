// kyinventory import: a section file from a text of a common format.
#include <string>

#include "Command.h"
#include "Files.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyFormats.h"

namespace
{
struct ImportArguments
{
  std::string file;
  std::string format;    // empty: by its content
  TargetOptions target;
};

TreePointer importedTree(const ImportArguments& arguments)
{
  KyCErrorListPool pool;
  std::string text;
  TreePointer tree;
  const Progress progress("importing " + inputName(arguments.file));
  if (KyNInventoryKit::readBytes(pool, arguments.file, text))
  {
    KyNInventoryKit::Format format = KyNInventoryKit::Format::JSON;
    const bool isNamed = KyNInventoryKit::formatOfName(arguments.format, format);
    tree = isNamed ? KyNInventoryKit::importTree(pool, text, format) : KyNInventoryKit::importTree(pool, text);
  }
  complainAbout(inputName(arguments.file), pool);
  return tree;
}

int importFile(const ImportArguments& arguments)
{
  if (isOutputAnInput({arguments.file}, arguments.target)) return EXIT_USAGE;
  if (!mayStore(arguments.file, arguments.target)) return exitCodeOfRefusal(arguments.file, arguments.target);
  const TreePointer tree = importedTree(arguments);
  return tree ? storeTree(arguments.file, *tree, arguments.target) : EXIT_INPUT;
}
}    // namespace

void addImportCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ImportArguments>();
  CLI::App* command = program.add_subcommand("import", "Make a section file of JSON, JSON lines or mark-up");
  command->add_option("FILE", arguments->file, "File with the text; - is standard input")->required();
  command->add_option("-o,--output", arguments->target.output, "File to store the section in; - is standard output")
      ->required()
      ->check(notEmpty())
      ->type_name("FILE");
  command->add_flag("--force", arguments->target.isForced, "Let -o write over an existing file");
  command->add_option("--format", arguments->format, "json, jsonl or markup; default: what the text looks like")
      ->check(CLI::IsMember({"json", "jsonl", "markup"}));
  setManual(
      *command,
      {"Reads what export writes. Of mark-up it also reads what show prints, as far as that says it: texts that are "
       "not UTF-8 were changed there, and IDs without a name are there only with --options 0x200000. "
       "A program that was built without the pugixml library reads no mark-up: it says so, with exit code 3.\n\n"
       "JSON lines say nothing of items: those on the way to a parameter are made, with the names of their IDs as "
       "descriptions, below a root item ROOT.\n\n"
       "The first thing that is wrong is told with line, column and address, and nothing is written then.",
       {{"kyinventory import rack.json -o rack.kyinv", "makes a section file of exported JSON"},
        {"kyinventory show rack.kyinv | kyinventory import - -o copy.kyinv", "makes a section file of a text dump"}}});
  command->callback([arguments, &exitCode]() { exitCode = importFile(*arguments); });
}
