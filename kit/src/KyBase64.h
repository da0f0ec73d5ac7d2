// KyBase64.h: bytes as letters, and back.
#pragma once

#include <string>
#include <string_view>

namespace KyNInventoryKit
{
std::string base64Of(std::string_view bytes);    // with its padding, in one line

// Strict: whole groups of four, "=" at the end alone, no bits set that stand for nothing, no white space.
bool readBase64(std::string_view text, std::string& bytes);
}    // namespace KyNInventoryKit
