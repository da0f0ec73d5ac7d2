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

// How much a misspelled name differs from one that it may stand for; both in upper case. NOT_NEAR when nobody would have
// meant that one: more than every fourth letter is otherwise, and neither begins with the other. What is near by its
// beginning alone ranks behind everything that is near by its letters.
constexpr std::size_t NOT_NEAR = static_cast<std::size_t>(-1);
std::size_t nameDistance(const std::string& wanted, const std::string& candidate);

// The largest distance by letters.
std::size_t farthestByLetters(const std::string& wanted);

// " Did you mean CPU, CPLD or CPID?"; empty without names.
std::string didYouMean(const std::vector<std::string>& names);
}    // namespace KyNInventoryKit
