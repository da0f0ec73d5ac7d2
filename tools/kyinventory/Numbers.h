// Numbers.h: whole numbers as people type them on the command line.
//
// An option that takes one is kept as text and read with parseWholeNumber: the command-line parser's own conversion takes
// a leading 0 for octal.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <string_view>

// The decimal number that the whole text is, digits alone; zeros in front mean nothing. None when it is anything else or
// lies outside the bounds.
std::optional<unsigned int> parseWholeNumber(std::string_view text, unsigned int lowest, unsigned int highest);

// Says no, and names the bounds, where parseWholeNumber gives none.
CLI::Validator wholeNumber(unsigned int lowest, unsigned int highest);
