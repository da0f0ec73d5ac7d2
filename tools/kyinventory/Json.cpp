#include "Json.h"

#include <cmath>
#include <cstdio>

#include "Output.h"
#include "composite/KyCParam.h"
#include "inventorykit/KyValueText.h"

namespace
{
// The length of the UTF-8 character that begins at the front of the text; 0 when none does.
std::size_t characterLength(std::string_view text, unsigned int& character)
{
  const auto byte = [&](std::size_t n) { return static_cast<unsigned char>(text[n]); };
  const unsigned char first = byte(0);
  character = first;
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  character = first & (0x7Fu >> length);
  for (std::size_t n = 1; n < length; ++n)
  {
    if ((byte(n) & 0xC0) != 0x80) return 0;
    character = character << 6 | (byte(n) & 0x3Fu);
  }
  const bool isTooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool isSurrogate = character >= 0xD800 && character < 0xE000;
  return isTooLong || isSurrogate || character > 0x10FFFF ? 0 : length;
}

std::string base64(std::string_view bytes)
{
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t n = 0; n < bytes.size(); n += 3)
  {
    const std::size_t count = bytes.size() - n < 3 ? bytes.size() - n : 3;
    unsigned int bits = 0;
    for (std::size_t k = 0; k < 3; ++k)
      bits = bits << 8 | (k < count ? static_cast<unsigned char>(bytes[n + k]) : 0u);
    for (std::size_t k = 0; k < 4; ++k)
      text += k <= count ? digits[bits >> (18 - 6 * k) & 0x3F] : '=';
  }
  return text;
}

}    // namespace

std::string jsonText(std::string_view text)
{
  std::string json = "\"";
  for (std::size_t n = 0; n < text.size();)
  {
    unsigned int character = 0;
    const std::size_t length = characterLength(text.substr(n), character);
    if (length == 0) return "{\"bytes\": \"" + base64(text) + "\"}";
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    if (isControl)
    {
      char escaped[8];
      std::snprintf(escaped, sizeof(escaped), "\\u%04x", character);
      json += character == '\n' ? "\\n" : character == '\t' ? "\\t" : escaped;
    }
    else
    {
      if (character == '"' || character == '\\') json += '\\';
      json += text.substr(n, length);
    }
    n += length;
  }
  return json + "\"";
}

std::string jsonValue(const KyCInventoryParameter& parameter)
{
  if (*parameter.getTypeAsCString() == '\0') return "null";
  const unsigned int type = parameter.getType();
  const bool isSmallInteger =
      type >= KyCParam::TYPE_INT8 && type <= KyCParam::TYPE_UINT32 && type != KyCParam::TYPE_LONG64;
  const std::string text = KyNInventoryKit::valueText(parameter);
  return isSmallInteger ? text : jsonText(text);
}

std::string jsonNode(std::string_view address, const KyNInventoryKit::Node& node)
{
  std::string json = "{\"address\": " + jsonText(address);
  const KyCInventoryParameter* const p = node.parameter;
  if (p != nullptr)
  {
    json += ", \"type\": " + jsonText(p->getTypeAsCString()) + ", \"value\": " + jsonValue(*p);
    json += ", \"unit\": " + jsonText(p->getUnit());
    json += std::string(", \"modifiable\": ") + (p->isModifiable() ? "true" : "false");
    json += ", \"relevance\": " + std::to_string(p->getRelevance());
  }
  const char* const description = p != nullptr ? p->getDescription() : node.item->getDescription();
  return json + ", \"description\": " + jsonText(description) + "}";
}

void printNodesAsJson(Output& out, const std::vector<KyNInventoryKit::Node>& nodes)
{
  KyNInventoryKit::AddressTexts addresses;
  out.text("[");
  const char* separator = "\n";
  for (const KyNInventoryKit::Node& node : nodes)
  {
    out.text(separator).text("  ").text(jsonNode(addresses.of(node), node));
    separator = ",\n";
    if (out.hasFailed()) break;
  }
  out.text("\n]\n");
}
