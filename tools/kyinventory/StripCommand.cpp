// kyinventory strip: takes the section away from an image.
#include <string>

#include "Command.h"
#include "Files.h"
#include "SectionEndOption.h"
#include "Terminal.h"
#include "inventorykit/KyImage.h"

namespace
{
using KyNInventoryKit::SectionEnd;

struct StripArguments
{
  std::string image;
  SectionEnd at = SectionEnd::READ;
  TargetOptions target;
};

int strip(const StripArguments& arguments)
{
  if (!mayStore(arguments.image, arguments.target)) return exitCodeOfRefusal(arguments.image, arguments.target);
  const std::string name = inputName(arguments.image);
  KyCErrorListPool pool;
  std::string image;
  if (!KyNInventoryKit::readImage(pool, arguments.image, image) ||
      !KyNInventoryKit::stripSection(pool, image, name, arguments.at))
  {
    complainAbout(name, pool);
    return EXIT_INPUT;
  }
  return storeBytes(arguments.image, image, arguments.target);
}
}    // namespace

void addStripCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<StripArguments>();
  CLI::App* command = program.add_subcommand("strip", "Take the section away from an image");
  command->add_option("IMAGE", arguments->image, "File with a section at its end or start; - is standard input")
      ->required();
  addSectionEndOption(*command, arguments->at,
                      "Which section, in a file with two; default: the one that reading takes");
  addTargetOptions(*command, arguments->target,
                   "File to store the result in, IMAGE staying as it is; - is standard output");
  setManual(
      *command,
      {"Leaves the image as it was before the section was appended, byte for byte. IMAGE is changed in place, and "
       "keeps its mode and owner, unless -o names another file. A section that does not read as a tree is not "
       "taken away, nor is one whose header or trailer is damaged: where it begins or ends is not certain. "
       "kyinventory extract saves the section of such a file.",
       {{"kyinventory strip firmware.bin", "takes the section away"},
        {"kyinventory strip firmware.bin -o plain.bin", "stores what is left as another file"}}});
  command->callback([arguments, &exitCode]() { exitCode = strip(*arguments); });
}
