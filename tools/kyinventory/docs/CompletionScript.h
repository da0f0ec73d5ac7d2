// CompletionScript.h: completions for command-line shells.
#pragma once

#include "CommandTable.h"

std::string bashCompletion(const std::vector<CommandRow>& table);
std::string zshCompletion(const std::vector<CommandRow>& table);
std::string fishCompletion(const std::vector<CommandRow>& table);
