// KyNearest.h: which names a misspelled one may stand for.
#pragma once

#include <string>
#include <vector>

namespace KyNInventoryKit
{
std::string upperCase(std::string text);    // of the letters of ASCII

// The fewest insertions, deletions, replacements and exchanges of neighbours that make one text of the other.
// Cost: the product of the two lengths.
std::size_t editDistance(const std::string& a, const std::string& b);

// " Did you mean CPU, CPLD or CPID?"; empty without names.
std::string didYouMean(const std::vector<std::string>& names);
}    // namespace KyNInventoryKit
