#include "KyBase64.h"

#include <cstdint>

namespace KyNInventoryKit
{
namespace
{
constexpr char s_digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

unsigned int byteAt(std::string_view text, std::size_t n) { return static_cast<unsigned char>(text[n]); }

// 0 .. 63; 64 for a character that is no digit.
unsigned int digitOf(char c)
{
  if (c >= 'A' && c <= 'Z') return static_cast<unsigned int>(c - 'A');
  if (c >= 'a' && c <= 'z') return static_cast<unsigned int>(c - 'a') + 26;
  if (c >= '0' && c <= '9') return static_cast<unsigned int>(c - '0') + 52;
  return c == '+' ? 62 : c == '/' ? 63 : 64;
}
}    // namespace

std::string base64Of(std::string_view bytes)
{
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t n = 0; n < bytes.size(); n += 3)
  {
    const std::size_t left = bytes.size() - n;
    const unsigned int group =
        byteAt(bytes, n) << 16 | (left > 1 ? byteAt(bytes, n + 1) << 8 : 0u) | (left > 2 ? byteAt(bytes, n + 2) : 0u);
    text += s_digits[group >> 18];
    text += s_digits[group >> 12 & 63u];
    text += left > 1 ? s_digits[group >> 6 & 63u] : '=';
    text += left > 2 ? s_digits[group & 63u] : '=';
  }
  return text;
}

bool readBase64(std::string_view text, std::string& bytes)
{
  bytes.clear();
  if (text.size() % 4 != 0) return false;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t n = 0; n < text.size(); n += 4)
  {
    std::size_t count = 4;
    if (n + 4 == text.size() && text[n + 3] == '=') count = text[n + 2] == '=' ? 2 : 3;
    std::uint32_t group = 0;
    for (std::size_t m = 0; m < 4; ++m)
    {
      const unsigned int digit = m < count ? digitOf(text[n + m]) : 0;
      if (digit == 64) return false;
      group = group << 6 | digit;
    }
    if ((count == 2 && (group & 0xFFFFu) != 0) || (count == 3 && (group & 0xFFu) != 0)) return false;
    bytes += static_cast<char>(group >> 16);
    if (count > 2) bytes += static_cast<char>(group >> 8 & 0xFFu);
    if (count > 3) bytes += static_cast<char>(group & 0xFFu);
  }
  return true;
}
}    // namespace KyNInventoryKit
