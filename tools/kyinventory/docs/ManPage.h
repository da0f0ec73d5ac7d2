// ManPage.h: man pages, in the man macros of roff.
#pragma once

#include "CommandTable.h"

// The page of a row of the table: kyinventory(1), or kyinventory-COMMAND(1).
std::string manPage(const std::vector<CommandRow>& table, const CommandRow& row);

// "kyinventory-show"; "kyinventory" for the program.
std::string manName(const CommandRow& row);
