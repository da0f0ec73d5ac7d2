// kyinventory export: a tree as a text of a common format.
#include <string>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyFormats.h"

namespace
{
struct ExportArguments
{
  std::string file;
  std::string format = "json";
  TargetOptions target;
};

int exportFile(const ExportArguments& arguments)
{
  if (isOutputAnInput({arguments.file}, arguments.target)) return EXIT_USAGE;
  const bool isPrinted = arguments.target.output.empty() || arguments.target.output == "-";
  if (!isPrinted && !mayStore(arguments.file, arguments.target)) return EXIT_OUTPUT;
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  KyNInventoryKit::Format format = KyNInventoryKit::Format::JSON;
  KyNInventoryKit::formatOfName(arguments.format, format);
  KyCErrorListPool pool;
  std::string text;
  bool isExported = false;
  {
    const Progress progress("exporting " + inputName(arguments.file));
    isExported = KyNInventoryKit::exportTree(pool, *tree, format, text);
  }
  complainAbout(inputName(arguments.file), pool);
  if (!isExported) return EXIT_INPUT;
  if (!isPrinted) return storeBytes(arguments.file, text, arguments.target);
  Output out;
  out.lines(text);
  return out.finish(EXIT_OK);
}
}    // namespace

void addExportCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ExportArguments>();
  CLI::App* command = program.add_subcommand("export", "Write a tree as JSON, JSON lines, CSV or mark-up");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("--format", arguments->format, "json, jsonl, csv or markup; default: json")
      ->check(CLI::IsMember({"json", "jsonl", "csv", "markup"}));
  command->add_option("-o,--output", arguments->target.output, "File to write; - is standard output, and the default")
      ->check(notEmpty())
      ->type_name("FILE");
  command->add_flag("--force", arguments->target.isForced, "Let -o write over an existing file");
  setManual(
      *command,
      {"JSON and mark-up hold everything that a section holds: import gives back the same tree, whatever bytes its "
       "texts have. JSON lines and CSV have one line a parameter, with address, type, value, unit, modifiable flag, "
       "relevance and description, for jq, grep, spreadsheets and data frames. Items without parameters and what "
       "is said of items themselves are not in there.\n\n"
       "CSV has a line with the names of the columns first, commas, line feeds behind lines, and double quotes "
       "around what needs them. Values stand in it as they are: one that begins with = is a formula to a "
       "spreadsheet.",
       {{"kyinventory export rack.kyinv -o rack.json", "writes the tree as JSON"},
        {"kyinventory export rack.kyinv --format markup", "prints the tree as mark-up"},
        {"kyinventory export rack.kyinv --format csv -o rack.csv", "writes a table of all parameters"}}});
  command->callback([arguments, &exitCode]() { exitCode = exportFile(*arguments); });
}
