// KyVersionText.h: the text of a version without memory from the heap.
#pragma once

#include "composite/KyCVersion.h"

// Four numbers of at most ten digits and three dots.
constexpr unsigned int KY_VERSION_TEXT_SIZE = 4 * 10 + 3;

// Writes the dotted numbers into the buffer, without a NUL. Result: the number of characters.
unsigned int formatVersion(const KyCVersion& version, char (&buffer)[KY_VERSION_TEXT_SIZE]) noexcept;
