#include "KyJsonText.h"

namespace KyNInventoryKit
{
namespace
{
std::string base64(std::string_view bytes)
{
  static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t n = 0; n < bytes.size(); n += 3)
  {
    const std::size_t count = bytes.size() - n < 3 ? bytes.size() - n : 3;
    unsigned int bits = 0;
    for (std::size_t m = 0; m < 3; ++m)
      bits = bits << 8 | (m < count ? static_cast<unsigned char>(bytes[n + m]) : 0u);
    for (std::size_t m = 0; m < 4; ++m)
      text += m <= count ? digits[bits >> (18 - 6 * m) & 0x3F] : '=';
  }
  return text;
}

// The length of the character at the start of the text; 0: none that is valid.
std::size_t characterLength(std::string_view text)
{
  const auto byte = [text](std::size_t n) { return static_cast<unsigned char>(text[n]); };
  const unsigned int first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t n = 1; n < length; ++n)
    if ((byte(n) & 0xC0) != 0x80) return 0;
  const bool isOverlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool isOutside = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
  return isOverlong || isOutside ? 0 : length;
}
}    // namespace

bool kyIsUtf8(std::string_view text)
{
  while (!text.empty())
  {
    const std::size_t length = characterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

nlohmann::ordered_json kyJsonText(std::string_view text)
{
  if (kyIsUtf8(text)) return std::string(text);
  return {{"bytes", base64(text)}};
}
}    // namespace KyNInventoryKit
