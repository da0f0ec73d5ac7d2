// KyHostText.h: what untrusted texts of a machine become before they enter the inventory.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KyNHostText
{
constexpr std::size_t MAX_LENGTH = 1024;    // bytes of one text in the inventory

// The text up to its first NUL, control characters as spaces, outer spaces gone, bytes that are not UTF-8 as "?", at
// most MAX_LENGTH bytes and never cut inside a character.
std::string clean(std::string_view raw);

// As clean, and empty when the text only stands where a maker or the kernel had nothing to say: "To Be Filled By
// O.E.M.", "Default string", "Unknown", "00000000", ...
std::string told(std::string_view raw);

// A decimal number and nothing else but outer spaces; none when it is anything else or exceeds 64 bits.
std::optional<unsigned long long> toNumber(std::string_view raw);

// A decimal number with an optional point, such as "2249.998", in units of 10^-decimals; further decimals are dropped.
// None when it is anything else or exceeds 64 bits.
std::optional<unsigned long long> toFixedPoint(std::string_view raw, unsigned int decimals);

// value * factor; none when it is 0 (an unknown size) or exceeds 64 bits.
std::optional<unsigned long long> scaled(std::optional<unsigned long long> value, unsigned long long factor);

// The text behind "key" and the separator on the first line that starts with them, quotes around it gone: one value of
// an os-release file ('=') or of a file of /proc (':'). Empty when there is none.
std::string valueOfKey(std::string_view file, std::string_view key, char separator);
}    // namespace KyNHostText
