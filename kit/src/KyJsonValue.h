// KyJsonValue.h: texts and values of parameters as JSON, and back, without loss.
//
//   {"type": "Int32", "value": 4096}      integers of up to 32 bits are JSON numbers
//   {"type": "ULong64", "value": "18446744073709551615"}   those of 64 bits are strings: many readers round large numbers
//   {"type": "Float64", "value": "0.1"}   floating-point numbers are strings, with the text of KyValueText.h
//   {"type": "Version", "value": "1.2.3.4"}
//   {"type": "String", "value": "fast"}   a text is a JSON string when it is UTF-8 without zero bytes, else its bytes:
//   {"type": "String", "value": {"bytes": "/wA="}}
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/KyCInventoryParameter.h"

namespace KyNInventoryKit
{
// What is written keeps its order. A type of its own, by the last argument, for its destructor below.
struct JsonBytes : std::vector<std::uint8_t>
{
  using std::vector<std::uint8_t>::vector;
};
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t, std::uint64_t,
                                  double, std::allocator, nlohmann::adl_serializer, JsonBytes>;
}    // namespace KyNInventoryKit

// To be filled field by field: its constructor from a list loses blocks when there is no memory for all of them.
//
// The destructor would ask for memory to take nested values apart without recursion, and end the program when there is
// none. Values here are nested a few levels deep: what is read is limited, what is written is known.
template <>
inline void KyNInventoryKit::Json::json_value::destroy(nlohmann::detail::value_t kind)
{
  using nlohmann::detail::value_t;
  if (kind == value_t::object)
    delete object;
  else if (kind == value_t::array)
    delete array;
  else if (kind == value_t::string)
    delete string;
  else if (kind == value_t::binary)
    delete binary;
}

namespace KyNInventoryKit
{

// The length of the character that starts at byte n of a text; 0 when that is no well-formed UTF-8.
std::size_t utf8Length(std::string_view text, std::size_t n);

// Whether a text is well-formed UTF-8: no surrogates, no longer forms, nothing above U+10FFFF. Plain: no U+0000 either.
bool isUtf8(std::string_view text);
bool isPlainUtf8(std::string_view text);

// Whether the JSON is a string with this text. Its own comparison asks for memory where it must not throw.
inline bool isJsonText(const Json& json, std::string_view text)
{
  const std::string* const own = json.get_ptr<const std::string*>();
  return own != nullptr && *own == text;
}

// A document as text, on one line or indented. In its strings, what a terminal obeys or what changes the order in which a
// line is read is escaped, also beyond ASCII.
std::string dumped(const Json& json, int indent = -1);

// A text, whatever its bytes: a string, or an object with its bytes in base64.
Json jsonOfText(std::string_view text);

// The text that jsonOfText gave; false when the JSON is no text.
bool textOfJson(const Json& json, std::string& text);

// The name of a parameter's type; for a code that is none of the twelve, its number: "0x777".
std::string typeText(const KyCInventoryParameter& parameter);

// The value of a parameter; null for one whose type is none of the twelve.
Json jsonOfValue(const KyCInventoryParameter& parameter);

// The text, as KyValueText.h reads it, of a JSON value for a parameter of this type (a code). Taken are also: a number for
// any type of numbers, and a string for integers of up to 32 bits. Whether the value is within the bounds of the type is
// not looked at.
//
// Result:     false when the JSON is of a kind that the type has no use for.
bool valueTextOfJson(const Json& json, unsigned int type, std::string& text);
}    // namespace KyNInventoryKit
