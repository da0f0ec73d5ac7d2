#include "KyFormatParts.h"

#include <algorithm>
#include <charconv>

namespace KyNInventoryKit
{
namespace
{
constexpr char s_base64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

unsigned int byteAt(const std::string& text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

// -1 when the character is none of the alphabet.
int base64Digit(char c)
{
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}
}    // namespace

std::string base64Of(const std::string& bytes)
{
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3)
  {
    const std::size_t left = bytes.size() - at;
    const unsigned int group =
        byteAt(bytes, at) << 16 | (left > 1 ? byteAt(bytes, at + 1) << 8 : 0) | (left > 2 ? byteAt(bytes, at + 2) : 0);
    text += s_base64[group >> 18];
    text += s_base64[group >> 12 & 63];
    text += left > 1 ? s_base64[group >> 6 & 63] : '=';
    text += left > 2 ? s_base64[group & 63] : '=';
  }
  return text;
}

bool readBase64(const std::string& text, std::string& bytes)
{
  bytes.clear();
  if (text.size() % 4 != 0) return false;
  for (std::size_t at = 0; at < text.size(); at += 4)
  {
    const bool isLast = at + 4 == text.size();
    const std::size_t padding = isLast && text[at + 3] == '=' ? (text[at + 2] == '=' ? 2 : 1) : 0;
    unsigned int group = 0;
    for (std::size_t n = 0; n < 4; ++n)
    {
      const int digit = n + padding >= 4 ? 0 : base64Digit(text[at + n]);
      if (digit < 0) return false;
      group = group << 6 | static_cast<unsigned int>(digit);
    }
    if ((padding == 1 && (group & 0xFF) != 0) || (padding == 2 && (group & 0xFFFF) != 0)) return false;
    bytes += static_cast<char>(group >> 16);
    if (padding < 2) bytes += static_cast<char>(group >> 8 & 0xFF);
    if (padding < 1) bytes += static_cast<char>(group & 0xFF);
  }
  return true;
}

TextPlace placeOf(const std::string& text, std::size_t offset)
{
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text.size()));
  const auto line = std::count(text.begin(), end, '\n');
  std::size_t start = static_cast<std::size_t>(end - text.begin());
  while (start > 0 && text[start - 1] != '\n')
    --start;
  return {static_cast<unsigned int>(line) + 1,
          static_cast<unsigned int>(static_cast<std::size_t>(end - text.begin()) - start) + 1};
}

std::string addressForPeople(const std::string& text)
{
  constexpr std::size_t s_longest = 200;
  constexpr std::size_t s_end = 80;
  if (text.empty()) return "root item";
  return text.size() <= s_longest ? text : text.substr(0, s_end) + "..." + text.substr(text.size() - s_end);
}

bool readNumber(const std::string& text, unsigned int& number)
{
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && end == last;
}
}    // namespace KyNInventoryKit
