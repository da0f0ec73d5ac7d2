// SectionEndOption.h: the --at option of the sub-commands that work with the section at one end of a file.
#pragma once

#include <string>

#include "Command.h"
#include "inventorykit/KyInspect.h"

// Adds --at start|end; `at` stays what it is when the option is not given.
void addSectionEndOption(CLI::App& command, KyNInventoryKit::SectionEnd& at, const std::string& description);
