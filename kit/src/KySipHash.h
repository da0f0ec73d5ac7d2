// KySipHash.h: SipHash-2-4, a keyed hash of short texts (J.-P. Aumasson, D. J. Bernstein).
//
// In a file of its own rather than from a library: Debian has no 32-bit development packages of the cryptographic ones
// beside the 64-bit ones, and a section must be anonymised to the same bytes by every build. The test holds it to the
// published vectors.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace KyNInventoryKit
{
using SipKey = std::array<std::uint64_t, 2>;    // the key's bytes 0 .. 7 and 8 .. 15, the lowest first

std::uint64_t sipHash(const SipKey& key, std::string_view data);
}    // namespace KyNInventoryKit
