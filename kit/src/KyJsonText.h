// KyJsonText.h: texts of files in JSON, without loss.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace KyNInventoryKit
{
// Whether the text is valid UTF-8: shortest forms, no surrogates, nothing above U+10FFFF.
bool kyIsUtf8(std::string_view text);

// A string; {"bytes": "<base64>"} for a text that is not valid UTF-8.
nlohmann::ordered_json kyJsonText(std::string_view text);
}    // namespace KyNInventoryKit
