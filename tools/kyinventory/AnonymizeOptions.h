// AnonymizeOptions.h: what the sub-commands that anonymise have in common.
#pragma once

#include <string>

#include "Command.h"
#include "Files.h"

// The key of the pseudonyms; one that nobody knows when neither is given.
struct KeyOptions
{
  std::string text;
  std::string file;
};

//   needed   the option without which a key makes no sense; may be null
void addKeyOptions(CLI::App& command, KeyOptions& options, CLI::Option* needed);

// Result:  false after a message.
bool readKey(const KeyOptions& options, std::string& key);

// An anonymised copy; null after a message.
TreePointer anonymized(const KyCInventoryItem& tree, const std::string& key);
