#include "AnonymizeOptions.h"

#include "Files.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyAnonymize.h"

void addKeyOptions(CLI::App& command, KeyOptions& options, CLI::Option* needed)
{
  CLI::Option* const text = command.add_option(
      "--key", options.text, "Key of the pseudonyms, so that other files get the same ones; default: a new random key");
  CLI::Option* const file =
      command
          .add_option("--key-file", options.file,
                      "File with the key: its bytes, without line feeds at the end; - is standard input")
          ->type_name("FILE");
  text->check(notEmpty())->excludes(file);
  file->check(notEmpty());
  for (CLI::Option* const option : {text, file})
    if (needed != nullptr) option->needs(needed);
}

bool readKey(const KeyOptions& options, std::string& key)
{
  KyCErrorListPool pool;
  key = options.text;
  const bool isRead = options.file.empty() ? !key.empty() || KyNInventoryKit::randomKey(pool, key)
                                           : KyNInventoryKit::readBytes(pool, options.file, key);
  complainAbout(options.file.empty() ? "anonymize" : inputName(options.file), pool);
  if (!isRead || options.file.empty()) return isRead;
  key.erase(key.find_last_not_of('\n') + 1);
  if (key.empty()) complain(inputName(options.file) + ": holds no key");
  return !key.empty();
}

TreePointer anonymized(const KyCInventoryItem& tree, const std::string& key)
{
  KyCErrorListPool pool;
  const Progress progress("replacing what tells whose machine it is");
  TreePointer copy = KyNInventoryKit::anonymizedTree(pool, tree, key);
  complainAbout("anonymize", pool);
  return copy;
}
