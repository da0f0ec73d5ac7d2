// KyNaNBits.h: the bits of floating-point values that are no numbers.
#pragma once

#include <cstdint>

#include "inventory/KyCInventoryParameter.h"

namespace KyNInventoryKit
{
// The bits of the value of a Float32 or Float64 parameter, as they are stored. Needed for NaNs alone: on x86 a function
// returns a floating-point number through the x87 registers, and these make a quiet NaN of a signalling one.
//
// Cost:       the parameter is stored in memory.
std::uint64_t storedBits(const KyCInventoryParameter& parameter);
}    // namespace KyNInventoryKit
