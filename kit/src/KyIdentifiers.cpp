#include "KyIdentifiers.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace KyNInventoryKit
{
namespace
{
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHex(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool isWord(char c) { return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// What begins at a place of a text.
class Rest
{
public:
  Rest(std::string_view text, std::size_t at) : m_text(text), m_at(at) {}

  char operator[](std::size_t n) const { return m_at + n < m_text.size() ? m_text[m_at + n] : '\0'; }
  char before(std::size_t n = 1) const { return m_at >= n ? m_text[m_at - n] : '\0'; }
  std::string_view first(std::size_t count) const { return m_text.substr(m_at, count); }

  // The number of hexadecimal digits from n on, at most `limit`.
  std::size_t hexDigits(std::size_t n, std::size_t limit) const
  {
    std::size_t count = 0;
    while (count < limit && isHex((*this)[n + count]))
      ++count;
    return count;
  }

private:
  std::string_view m_text;
  std::size_t m_at;
};

bool isAll(const std::string& bytes, char byte)
{
  return std::all_of(bytes.begin(), bytes.end(), [&](char c) { return c == byte; });
}

std::string withoutSeparators(std::string_view text)
{
  std::string digits;
  for (const char c : text)
    if (isHex(c)) digits += c;
  return digits;
}

bool finish(const Rest& rest, IdentifierKind kind, std::size_t length, Identifier& identifier)
{
  if (isWord(rest[length])) return false;
  identifier.kind = kind;
  identifier.length = length;
  readHex(withoutSeparators(rest.first(length)), identifier.bytes);
  identifier.isHarmless = isAll(identifier.bytes, '\0') || isAll(identifier.bytes, '\xFF');
  return true;
}

bool readUuid(const Rest& rest, Identifier& identifier)
{
  constexpr std::size_t s_groups[] = {8, 4, 4, 4, 12};
  std::size_t length = 0;
  for (const std::size_t group : s_groups)
  {
    if (length != 0 && rest[length++] != '-') return false;
    if (rest.hexDigits(length, group) != group) return false;
    length += group;
  }
  return finish(rest, IdentifierKind::UUID, length, identifier);
}

// Six groups of two digits or more, or three of four digits joined by dots.
bool readMac(const Rest& rest, bool isVersion, Identifier& identifier)
{
  constexpr std::size_t s_mostGroups = 32;
  const std::size_t digits = rest.hexDigits(0, 5);
  const char separator = rest[digits];
  const bool isDotted = digits == 4 && separator == '.' && !isVersion;
  if (!isDotted && (digits != 2 || (separator != ':' && separator != '-'))) return false;
  std::size_t groups = 1;
  std::size_t length = digits;
  while (groups < s_mostGroups && rest[length] == separator && rest.hexDigits(length + 1, digits + 1) == digits)
  {
    ++groups;
    length += 1 + digits;
  }
  if (isDotted ? groups != 3 : groups < 6) return false;
  return finish(rest, IdentifierKind::MAC, length, identifier);
}

bool readIPv6(const Rest& rest, Identifier& identifier)
{
  constexpr std::size_t s_longest = 45;
  std::size_t length = 0;
  while (length <= s_longest && (isHex(rest[length]) || rest[length] == ':' || rest[length] == '.'))
    ++length;
  if (length > s_longest || isWord(rest[length])) return false;
  for (; length >= 3; --length)    // a full stop or a colon may stand behind it
  {
    char bytes[16];
    const std::string candidate(rest.first(length));
    if (::inet_pton(AF_INET6, candidate.c_str(), bytes) == 1)
    {
      identifier.kind = IdentifierKind::IPV6;
      identifier.length = length;
      identifier.bytes.assign(bytes, sizeof(bytes));
      const bool isLoopback = isAll(identifier.bytes.substr(0, 15), '\0') && bytes[15] == 1;
      identifier.isHarmless = isLoopback || isAll(identifier.bytes, '\0') || isAll(identifier.bytes, '\xFF');
      return true;
    }
    if (rest[length - 1] != '.' && rest[length - 1] != ':') return false;
  }
  return false;
}

bool readIPv4(const Rest& rest, Identifier& identifier)
{
  std::string bytes;
  std::size_t length = 0;
  for (int n = 0; n < 4; ++n)
  {
    if (n > 0 && rest[length++] != '.') return false;
    std::size_t digits = 0;
    while (digits < 4 && isDigit(rest[length + digits]))
      ++digits;
    const std::string_view number = rest.first(length + digits).substr(length);
    unsigned int value = 0;
    if (digits == 0 || digits == 4) return false;
    std::from_chars(number.data(), number.data() + number.size(), value);
    if (value > 255) return false;
    bytes += static_cast<char>(value);
    length += digits;
  }
  const bool isPartOfMore =
      (rest[length] == '.' && isDigit(rest[length + 1])) || (rest.before() == '.' && isDigit(rest.before(2)));
  if (isWord(rest[length]) || isPartOfMore) return false;
  const bool isNetmask = bytes[0] == '\xFF';
  identifier = {IdentifierKind::IPV4, length, bytes, isNetmask || bytes[0] == 127 || isAll(bytes, '\0')};
  return true;
}
}    // namespace

bool identifierAt(std::string_view text, std::size_t at, bool isVersion, Identifier& identifier)
{
  const Rest rest(text, at);
  if ((!isHex(rest[0]) && rest[0] != ':') || isWord(rest.before())) return false;
  return readUuid(rest, identifier) || readMac(rest, isVersion, identifier) || readIPv6(rest, identifier) ||
         (!isVersion && readIPv4(rest, identifier));
}

bool readHex(std::string_view text, std::string& bytes)
{
  bytes.clear();
  if (text.size() % 2 != 0) return false;
  for (std::size_t n = 0; n < text.size(); n += 2)
  {
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(text.data() + n, text.data() + n + 2, value, 16);
    if (error != std::errc() || end != text.data() + n + 2) return false;
    bytes += static_cast<char>(value);
  }
  return true;
}
}    // namespace KyNInventoryKit
