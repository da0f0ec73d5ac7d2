// kyinventory append: puts a section to an end of an image.
#include <string>

#include "Command.h"
#include "Files.h"
#include "SectionEndOption.h"
#include "Terminal.h"
#include "inventorykit/KyImage.h"

namespace
{
using KyNInventoryKit::Replace;
using KyNInventoryKit::SectionEnd;

constexpr unsigned int codeHasSection = 0x1502801;

struct AppendArguments
{
  std::string image;
  std::string file;
  SectionEnd at = SectionEnd::END;
  bool replace = false;
  TargetOptions target;
};

// The end of an image is read first.
void warnOfHiddenSection(const std::string& image, const AppendArguments& arguments)
{
  KyCErrorListPool ignored;
  KyNInventoryKit::Inspection atEnd;
  KyNInventoryKit::Inspection atStart;
  const bool isHidden = arguments.at == SectionEnd::START &&
                        KyNInventoryKit::inspectBytes(ignored, image, "", SectionEnd::START, atStart) &&
                        KyNInventoryKit::inspectBytes(ignored, image, "", SectionEnd::END, atEnd) &&
                        atEnd.begin != atStart.begin;
  if (isHidden) complain(inputName(arguments.image) + ": has a section at its end, too, and that one is what is read");
}

int append(const AppendArguments& arguments)
{
  if (isInputTwice({arguments.image, arguments.file})) return EXIT_USAGE;
  if (!mayStore(arguments.image, arguments.target)) return exitCodeOfRefusal(arguments.image, arguments.target);

  KyCErrorListPool pool;
  std::string image;
  std::string bytes;
  std::string section;
  if (!KyNInventoryKit::readImage(pool, arguments.image, image))
  {
    complainAbout(inputName(arguments.image), pool);
    return EXIT_INPUT;
  }
  if (!KyNInventoryKit::readImage(pool, arguments.file, bytes) ||
      !KyNInventoryKit::extractSection(pool, bytes, inputName(arguments.file), SectionEnd::READ, section))
  {
    complainAbout(inputName(arguments.file), pool);
    return EXIT_INPUT;
  }
  if (!KyNInventoryKit::appendSection(pool, image, inputName(arguments.image), section, arguments.at,
                                      arguments.replace ? Replace::YES : Replace::NO))
  {
    complainAbout(inputName(arguments.image), pool);
    const bool isThere = pool.getEntryCount() != 0 && pool.getEntry(0).code == codeHasSection;
    if (isThere) complain(inputName(arguments.image) + ": --replace puts the new section in its place");
    return isThere ? EXIT_NO : EXIT_INPUT;
  }
  const int exitCode = storeBytes(arguments.image, image, arguments.target);
  if (exitCode == EXIT_OK) warnOfHiddenSection(image, arguments);
  return exitCode;
}
}    // namespace

void addAppendCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<AppendArguments>();
  CLI::App* command = program.add_subcommand("append", "Put the section of a file to the end of an image");
  command->add_option("IMAGE", arguments->image, "File of any content; - is standard input")->required();
  command->add_option("FILE", arguments->file, "File with a section; only the section is taken; - is standard input")
      ->required();
  addSectionEndOption(*command, arguments->at, "Where the section goes; default: end");
  command->add_flag("--replace", arguments->replace, "Replace a section that is there already");
  addTargetOptions(*command, arguments->target,
                   "File to store the result in, IMAGE staying as it is; - is standard output");
  setManual(
      *command,
      {"Puts the section of FILE behind the content of IMAGE, or in front of it with --at start. IMAGE is changed in "
       "place, and keeps its mode and owner, unless -o names another file. Nothing is written before the new image "
       "has been found to give back both the section and the old image.\n\n"
       "An image with a section at that end is left alone, with exit code 1, unless --replace is given.",
       {{"kyinventory append firmware.bin rack.kyinv", "adds the section to the image"},
        {"kyinventory append firmware.bin rack.kyinv --replace", "puts it in place of the one that is there"}}});
  command->callback([arguments, &exitCode]() { exitCode = append(*arguments); });
}
