// kyinventory anonymize: a copy of a section file without what tells whose machine it is.
#include <string>

#include "AnonymizeOptions.h"
#include "Command.h"
#include "Files.h"

namespace
{
struct AnonymizeArguments
{
  std::string file;
  KeyOptions key;
  TargetOptions target;
};

int anonymize(const AnonymizeArguments& arguments)
{
  if (isInputTwice({arguments.file, arguments.key.file})) return EXIT_USAGE;
  if (isOutputAnInput({arguments.file, arguments.key.file}, arguments.target)) return EXIT_USAGE;
  if (!mayStore(arguments.file, arguments.target)) return exitCodeOfRefusal(arguments.file, arguments.target);
  std::string key;
  if (!readKey(arguments.key, key)) return EXIT_INPUT;
  const TreePointer tree = readTreeFile(arguments.file);
  const TreePointer copy = tree ? anonymized(*tree, key) : nullptr;
  return copy ? storeTree(arguments.file, *copy, arguments.target) : EXIT_INPUT;
}
}    // namespace

void addAnonymizeCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<AnonymizeArguments>();
  CLI::App* command = program.add_subcommand(
      "anonymize",
      "Copy a section file with pseudonyms for serial numbers, addresses, UUIDs, asset tags and host names");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_option("-o,--output", arguments->target.output, "File to store the copy in; - is standard output")
      ->required()
      ->check(notEmpty())
      ->type_name("FILE");
  command->add_flag("--force", arguments->target.isForced, "Let -o write over an existing file");
  addKeyOptions(*command, arguments->key, nullptr);
  setManual(
      *command,
      {"Replaces every serial number, MAC and IP address, UUID, asset tag and host name by a pseudonym of its form, "
       "wherever it stands: in the parameters for it, and inside other texts, units and descriptions. Versions "
       "stay: parameters of the type Version, and numbers joined by dots in parameters with VERSION or REVISION in "
       "their names. Bytes around the section are not copied.\n\n"
       "One text always has one pseudonym under one key. Without --key and --key-file the key is random and is kept "
       "nowhere: the pseudonyms of two runs have nothing in common. Whoever has the key can find out an original "
       "by trying, so take a long one and keep it secret; other users of the machine can see a --key while the "
       "program runs, but not what is in a --key-file.\n\n"
       "Words of 12 or 32 hexadecimal digits count as addresses and UUIDs, and the word behind a label such as S/N, "
       "Asset Tag or hostname as an identifier. Checksums, commits, numbers with 0x in front, words of other lengths "
       "(World Wide Names), MAC addresses with blanks in them, identifiers in a sentence without a label, behind a "
       "label in another language, or further ones of a list, and numbers in other parameters stay.\n\n"
       "What is no address and stands in no parameter for it, such as a person's name in a comment, is not known "
       "to the program. Look at the copy before it leaves the house.",
       {{"kyinventory anonymize customer.kyinv -o sendable.kyinv", "makes a copy that tells nobody's name"},
        {"kyinventory anonymize b.kyinv --key-file team.key -o b2.kyinv",
         "gives machines the pseudonyms that they have in other copies made with this key"}}});
  command->callback([arguments, &exitCode]() { exitCode = anonymize(*arguments); });
}
