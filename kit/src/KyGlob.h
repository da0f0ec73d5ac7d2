// KyGlob.h: names with wildcards.
#pragma once

#include <string_view>

namespace KyNInventoryKit
{
// Whether the pattern has a wildcard: "*" (any characters, none too) or "?" (any one character).
bool hasWildcard(std::string_view pattern);

// Whether the pattern stands for the whole text. Cost: at worst the product of the two lengths.
bool globMatches(std::string_view pattern, std::string_view text);
}    // namespace KyNInventoryKit
