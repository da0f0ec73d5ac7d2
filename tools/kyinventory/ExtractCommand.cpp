// kyinventory extract: writes the section of an image as a file of its own.
#include <string>

#include "Command.h"
#include "Files.h"
#include "SectionEndOption.h"
#include "Terminal.h"
#include "inventorykit/KyImage.h"

namespace
{
using KyNInventoryKit::SectionEnd;

struct ExtractArguments
{
  std::string image;
  SectionEnd at = SectionEnd::READ;
  TargetOptions target;
};

int extract(const ExtractArguments& arguments)
{
  if (isOutputAnInput({arguments.image}, arguments.target)) return EXIT_USAGE;
  if (!mayStore(arguments.image, arguments.target)) return exitCodeOfRefusal(arguments.image, arguments.target);
  const std::string name = inputName(arguments.image);
  KyCErrorListPool pool;
  std::string image;
  std::string section;
  if (!KyNInventoryKit::readImage(pool, arguments.image, image) ||
      !KyNInventoryKit::extractSection(pool, image, name, arguments.at, section))
  {
    complainAbout(name, pool);
    return EXIT_INPUT;
  }
  return storeBytes(arguments.image, section, arguments.target);
}
}    // namespace

void addExtractCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ExtractArguments>();
  CLI::App* command = program.add_subcommand("extract", "Write the section of an image as a file of its own");
  command->add_option("IMAGE", arguments->image, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("-o,--output", arguments->target.output, "File to store the section in; - is standard output")
      ->required()
      ->check(notEmpty())
      ->type_name("FILE");
  command->add_flag("--force", arguments->target.isForced, "Let -o write over an existing file");
  addSectionEndOption(*command, arguments->at,
                      "Which section, in a file with two; default: the one that reading takes");
  setManual(
      *command,
      {"Writes the section byte for byte as it stands in the image, once it has been found to read as a "
       "tree. A header or trailer that is missing or damaged is written anew: of a section that is damaged at one "
       "end, --at start or --at end names the sound one. IMAGE stays as it is.",
       {{"kyinventory extract firmware.bin -o rack.kyinv", "takes the section out as a file"},
        {"kyinventory extract --at start damaged.kyinv -o rack.kyinv", "saves a tree whose trailer is damaged"}}});
  command->callback([arguments, &exitCode]() { exitCode = extract(*arguments); });
}
