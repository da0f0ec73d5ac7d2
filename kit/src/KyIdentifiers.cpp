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

bool finish(const Rest& rest, IdentifierKind kind, std::size_t length, const std::string& digits,
            Identifier& identifier)
{
  if (isWord(rest[length])) return false;
  identifier.kind = kind;
  identifier.length = length;
  readHex(digits, identifier.bytes);
  identifier.isHarmless = isAll(identifier.bytes, '\0') || isAll(identifier.bytes, '\xFF');
  return true;
}

bool finish(const Rest& rest, IdentifierKind kind, std::size_t length, Identifier& identifier)
{
  return finish(rest, kind, length, withoutSeparators(rest.first(length)), identifier);
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

// Whether a group of hexadecimal digits and the separator stand in front.
bool isBehindGroup(const Rest& rest, char separator)
{
  constexpr std::size_t s_longest = 12;    // the last group of a UUID
  if (rest.before() != separator) return false;
  std::size_t digits = 0;
  while (digits < s_longest && isHex(rest.before(2 + digits)))
    ++digits;
  return digits != 0 && !isWord(rest.before(2 + digits));
}

// Six groups of two digits or more, or three of four digits, or four around ff and fe.
bool readMac(const Rest& rest, bool isVersion, Identifier& identifier)
{
  constexpr std::size_t s_mostGroups = 32;
  const std::size_t digits = rest.hexDigits(0, 5);
  const char separator = rest[digits];
  const bool isOfFour = digits == 4 && !isVersion;
  const bool isJoined = separator == ':' || separator == '-' || (isOfFour && separator == '.');
  if (!isJoined || (digits != 2 && !isOfFour)) return false;
  std::size_t groups = 1;
  std::size_t length = digits;
  while (groups < s_mostGroups && rest[length] == separator && rest.hexDigits(length + 1, digits + 1) == digits)
  {
    ++groups;
    length += 1 + digits;
  }
  if (isOfFour ? groups != 3 && groups != 4 : groups < 6) return false;
  if (!finish(rest, IdentifierKind::MAC, length, identifier)) return false;
  if (!isOfFour || separator == '.') return !isOfFour || groups == 3 || isExtendedMac(identifier.bytes);
  // Parts of an IPv6 address, a UUID or a name of an input device (0003:046D:C52B.0001) look alike.
  const bool isPartOfMore = isBehindGroup(rest, separator) || (rest[length] == separator && isHex(rest[length + 1])) ||
                            (separator == ':' && ((rest[length] == ':' && rest[length + 1] == ':') ||
                                                  (rest.before() == ':' && rest.before(2) == ':') ||
                                                  (rest[length] == '.' && isHex(rest[length + 1]))));
  return !isPartOfMore && (groups == 3 || isExtendedMac(identifier.bytes));
}

// Six groups without their leading zeros. One that is of digits alone may be a list of anything.
bool readShortMac(const Rest& rest, Identifier& identifier)
{
  std::string digits;
  std::size_t length = 0;
  for (int group = 0; group < 6; ++group)
  {
    if (group > 0 && rest[length++] != ':') return false;
    const std::size_t count = rest.hexDigits(length, 3);
    if (count == 0 || count == 3 || (count == 2 && rest[length] == '0')) return false;
    if (count == 1) digits += '0';
    for (std::size_t n = 0; n < count; ++n)
      digits += rest[length + n];
    length += count;
  }
  const bool isBehindGroup = rest.before() == ':' && isHex(rest.before(2)) &&
                             (!isWord(rest.before(3)) || (isHex(rest.before(3)) && !isWord(rest.before(4))));
  if (isBehindGroup || (rest[length] == ':' && isHex(rest[length + 1]))) return false;
  return std::any_of(digits.begin(), digits.end(), [](char c) { return !isDigit(c); }) &&
         finish(rest, IdentifierKind::MAC, length, digits, identifier);
}

// What stands in front of digits that are a checksum or a version and name no machine.
bool isNumberOfContent(const Rest& rest)
{
  constexpr std::size_t s_longest = 16;
  std::size_t end = 1;
  while (end <= 4 && rest.before(end) != '\0' && !isWord(rest.before(end)))
    ++end;
  std::string word;
  for (std::size_t n = end; word.size() < s_longest && isWord(rest.before(n)); ++n)
    word.insert(word.begin(), static_cast<char>(rest.before(n) | 0x20));
  for (const char* const known : {"md5", "sum", "crc", "hash", "digest", "commit", "version", "revision", "firmware"})
    if (word.find(known) != std::string::npos) return true;
  for (const char* const known : {"fw", "rev", "ver", "git", "build", "buildid", "etag"})
    if (word == known) return true;
  return false;
}

// Network interfaces are called by a MAC address: enx001b213c4d5e.
bool isBehindInterfacePrefix(const Rest& rest)
{
  if (isWord(rest.before(4)) || rest.before(1) != 'x') return false;
  return (rest.before(3) == 'e' && rest.before(2) == 'n') ||
         (rest.before(3) == 'w' && (rest.before(2) == 'l' || rest.before(2) == 'w'));
}

// Without separators: words of 12 or 32 digits, or of 16 with fffe in the middle, of letters and digits both.
bool readBare(const Rest& rest, Identifier& identifier)
{
  const std::size_t length = rest.hexDigits(0, 33);
  if (length != 12 && length != 16 && length != 32) return false;
  const std::string_view digits = rest.first(length);
  const auto letters = std::count_if(digits.begin(), digits.end(), [](char c) { return !isDigit(c); });
  if (letters == 0 || static_cast<std::size_t>(letters) == length || isNumberOfContent(rest)) return false;
  const IdentifierKind kind = length == 32 ? IdentifierKind::UUID : IdentifierKind::MAC;
  return finish(rest, kind, length, identifier) && (length != 16 || isExtendedMac(identifier.bytes));
}

bool isHarmlessIPv4(const std::string& bytes) { return bytes[0] == '\xFF' || bytes[0] == 127 || isAll(bytes, '\0'); }

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
      identifier.isHarmless = isLoopback ||
                              (isMappedIPv4(identifier.bytes) && isHarmlessIPv4(identifier.bytes.substr(12))) ||
                              isAll(identifier.bytes, '\0') || isAll(identifier.bytes, '\xFF');
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
  identifier = {IdentifierKind::IPV4, length, bytes, isHarmlessIPv4(bytes)};
  return true;
}
}    // namespace

bool identifierAt(std::string_view text, std::size_t at, bool isVersion, Identifier& identifier)
{
  const Rest rest(text, at);
  if (!isHex(rest[0]) && rest[0] != ':') return false;
  if (isWord(rest.before()))
    return isBehindInterfacePrefix(rest) && rest.hexDigits(0, 13) == 12 &&
           finish(rest, IdentifierKind::MAC, 12, identifier);
  return readUuid(rest, identifier) || readMac(rest, isVersion, identifier) || readShortMac(rest, identifier) ||
         readIPv6(rest, identifier) || (!isVersion && (readIPv4(rest, identifier) || readBare(rest, identifier)));
}

bool isMappedIPv4(std::string_view bytes)
{
  constexpr std::string_view s_start("\0\0\0\0\0\0\0\0\0\0\xFF\xFF", 12);
  return bytes.size() == 16 && bytes.substr(0, 12) == s_start;
}

bool isExtendedMac(std::string_view bytes) { return bytes.size() == 8 && bytes[3] == '\xFF' && bytes[4] == '\xFE'; }

std::string extendedMac(const std::string& mac)
{
  std::string bytes = mac.substr(0, 3) + "\xFF\xFE" + mac.substr(3);
  bytes[0] = static_cast<char>(bytes[0] ^ 2);
  return bytes;
}

std::string macOfExtended(std::string_view bytes)
{
  std::string mac(bytes.substr(0, 3));
  mac += bytes.substr(5);
  mac[0] = static_cast<char>(mac[0] ^ 2);
  return mac;
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
