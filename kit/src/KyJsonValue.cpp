#include "KyJsonValue.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

#include "KyBase64.h"
#include "composite/KyCParam.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
unsigned int byteAt(std::string_view text, std::size_t n) { return static_cast<unsigned char>(text[n]); }

// ---- Kinds of types ----

bool isInteger(unsigned int type) { return type >> 8 == KyCParam::TYPE_INT8 >> 8; }
bool isFloat(unsigned int type) { return type == KyCParam::TYPE_FLOAT32 || type == KyCParam::TYPE_FLOAT64; }

// The last digit of the code of an integer type is its size in bytes.
bool isSmallInteger(unsigned int type) { return isInteger(type) && (type & 0xFu) <= 4; }

// ---- Characters ----

// The code point of the character of so many bytes that starts at byte n.
unsigned int pointAt(std::string_view text, std::size_t n, std::size_t length)
{
  unsigned int point = length == 1 ? byteAt(text, n) : byteAt(text, n) & (0x7Fu >> length);
  for (std::size_t m = 1; m < length; ++m)
    point = point << 6 | (byteAt(text, n + m) & 0x3Fu);
  return point;
}

// What a terminal obeys, or what changes the order in which a line is read. None is beyond U+FFFF.
bool isControl(unsigned int point)
{
  return point < 0x20 || (point >= 0x7F && point <= 0x9F) || point == 0x61C || point == 0x200E || point == 0x200F ||
         (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

std::string escapeOf(unsigned int point)
{
  char escaped[8];
  std::snprintf(escaped, sizeof(escaped), "\\u%04x", point);
  return escaped;
}

Json numberOf(const std::string& digits)
{
  long long number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::string textOfNumber(const Json& json)
{
  if (!json.is_number_float()) return json.dump();
  char text[64];
  const auto result = std::to_chars(text, text + sizeof(text), json.get<double>());
  return std::string(text, result.ptr);
}
}    // namespace

std::size_t utf8Length(std::string_view text, std::size_t n)
{
  const unsigned int first = byteAt(text, n);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xC2 && first <= 0xDF   ? 2
                             : first >> 4 == 0xE              ? 3
                             : first >= 0xF0 && first <= 0xF4 ? 4
                                                              : 0;
  if (length == 0 || length > text.size() - n) return 0;
  for (std::size_t m = 1; m < length; ++m)
    if (byteAt(text, n + m) >> 6 != 2) return 0;
  const unsigned int second = byteAt(text, n + 1);
  if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F)) return 0;
  if ((first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) return 0;
  return length;
}

bool isUtf8(std::string_view text)
{
  for (std::size_t n = 0; n < text.size();)
  {
    const std::size_t length = utf8Length(text, n);
    if (length == 0) return false;
    n += length;
  }
  return true;
}

bool isPlainUtf8(std::string_view text) { return text.find('\0') == std::string_view::npos && isUtf8(text); }

Json jsonOfText(std::string_view text)
{
  if (isPlainUtf8(text)) return std::string(text);
  Json json = Json::object();
  json["bytes"] = base64Of(text);
  return json;
}

bool textOfJson(const Json& json, std::string& text)
{
  if (json.is_string())
  {
    text = json.get_ref<const std::string&>();
    return true;
  }
  if (!json.is_object() || json.size() != 1) return false;
  const auto bytes = json.find("bytes");
  return bytes != json.end() && bytes->is_string() && readBase64(bytes->get_ref<const std::string&>(), text);
}

// Beyond ASCII, characters stand in strings alone.
std::string dumped(const Json& json, int indent)
{
  const std::string text = json.dump(indent);
  std::string safe;
  std::size_t taken = 0;
  for (std::size_t n = 0; n < text.size();)
  {
    const std::size_t length = utf8Length(text, n);
    const unsigned int point = pointAt(text, n, length);
    if (point >= 0x7F && isControl(point))
    {
      safe.append(text, taken, n - taken).append(escapeOf(point));
      taken = n + length;
    }
    n += length;
  }
  return taken == 0 ? text : safe.append(text, taken, std::string::npos);
}

std::string jsonText(std::string_view text)
{
  std::string json = "\"";
  for (std::size_t n = 0; n < text.size();)
  {
    const std::size_t length = utf8Length(text, n);
    if (length == 0) return "{\"bytes\": \"" + base64Of(text) + "\"}";
    const unsigned int point = pointAt(text, n, length);
    if (isControl(point))
    {
      json += point == '\n' ? "\\n" : point == '\t' ? "\\t" : escapeOf(point);
    }
    else
    {
      if (point == '"' || point == '\\') json += '\\';
      json += text.substr(n, length);
    }
    n += length;
  }
  return json + "\"";
}

std::string jsonValueText(const KyCInventoryParameter& parameter)
{
  if (*parameter.getTypeAsCString() == '\0') return "null";
  const std::string text = valueText(parameter);
  return isSmallInteger(parameter.getType()) ? text : jsonText(text);
}

std::string typeText(const KyCInventoryParameter& parameter)
{
  const std::string name = parameter.getTypeAsCString();
  if (!name.empty()) return name;
  char code[16];
  std::snprintf(code, sizeof(code), "0x%X", parameter.getType());
  return code;
}

Json jsonOfValue(const KyCInventoryParameter& parameter)
{
  if (*parameter.getTypeAsCString() == '\0') return nullptr;
  const std::string text = valueText(parameter);
  if (parameter.getType() == KyCParam::TYPE_STRING) return jsonOfText(text);
  return isSmallInteger(parameter.getType()) ? numberOf(text) : Json(text);
}

bool valueTextOfJson(const Json& json, unsigned int type, std::string& text)
{
  if (type == KyCParam::TYPE_STRING) return textOfJson(json, text);
  const bool isNumber = json.is_number_integer() ? isInteger(type) || isFloat(type) : json.is_number() && isFloat(type);
  if (!isNumber && !json.is_string()) return false;
  text = isNumber ? textOfNumber(json) : json.get<std::string>();
  return true;
}
}    // namespace KyNInventoryKit
