// KyHostText.cpp: see KyHostText.h.
#include "KyHostText.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{
bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trim(std::string_view text)
{
  const auto isOuter = [](char c) { return c == ' ' || isControl(c); };
  while (!text.empty() && isOuter(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isOuter(text.back()))
    text.remove_suffix(1);
  return text;
}

// Bytes of the UTF-8 character at the start of the text; 0 when there is none (overlong forms, surrogates and numbers
// beyond 0x10FFFF included).
std::size_t characterLength(std::string_view text)
{
  const auto byte = [text](std::size_t n) { return n < text.size() ? static_cast<unsigned char>(text[n]) : 0u; };
  const auto continues = [byte](std::size_t n) { return (byte(n) & 0xC0u) == 0x80u; };
  const unsigned int first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF)
  {
    const bool overlong = first == 0xE0 && byte(1) < 0xA0;
    const bool surrogate = first == 0xED && byte(1) >= 0xA0;
    return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4)
  {
    const bool overlong = first == 0xF0 && byte(1) < 0x90;
    const bool beyond = first == 0xF4 && byte(1) >= 0x90;
    return continues(1) && continues(2) && continues(3) && !overlong && !beyond ? 4 : 0;
  }
  return 0;
}

// What firmware vendors and kernels write where they have nothing to say. Lower case.
constexpr std::array<std::string_view, 34> s_placeholders = {
    "to be filled by o.e.m.",
    "to be filled by o.e.m",
    "to be filled by oem",
    "to be filled",
    "not specified",
    "not available",
    "not applicable",
    "not provided",
    "not present",
    "not defined",
    "not set",
    "no asset tag",
    "no asset information",
    "no enclosure",
    "default string",
    "default",
    "unknown",
    "undefined",
    "unspecified",
    "none",
    "null",
    "n/a",
    "na",
    "oem",
    "o.e.m.",
    "empty",
    "invalid",
    "system manufacturer",
    "system product name",
    "system version",
    "system serial number",
    "base board serial number",
    "0123456789",
    "123456789",
};

// "0000-0000", "....", "XXXXXXXX", "FFFFFFFF": one and the same filler all the way, whatever joins its groups.
bool isFiller(std::string_view text)
{
  char filler = 0;
  for (const char c : text)
  {
    if (c == '-' || c == ' ' || c == ':' || c == '.' || c == '_') continue;
    if (c != '0' && c != 'x' && c != 'X' && c != 'f' && c != 'F' && c != '*' && c != '?') return false;
    if (filler != 0 && filler != c) return false;
    filler = c;
  }
  const bool hexDigit = filler == 'f' || filler == 'F';
  return !hexDigit || text.size() >= 8;    // a short "F" may well be a revision
}
}    // namespace

std::string KyNHostText::clean(std::string_view raw)
{
  raw = trim(raw.substr(0, raw.find('\0')));
  std::string result;
  while (!raw.empty())
  {
    const std::size_t length = characterLength(raw);
    if (result.size() + std::max<std::size_t>(length, 1) > MAX_LENGTH) break;
    if (length == 0)
      result += '?';
    else if (isControl(raw.front()))
      result += ' ';
    else
      result.append(raw.substr(0, length));
    raw.remove_prefix(std::max<std::size_t>(length, 1));
  }
  result.erase(trim(result).size());    // the cut may have left spaces at the end
  return result;
}

std::string KyNHostText::told(std::string_view raw)
{
  const std::string text = clean(raw);
  const auto matches = [&text](std::string_view placeholder) { return equalIgnoringCase(text, placeholder); };
  if (isFiller(text) || std::any_of(s_placeholders.begin(), s_placeholders.end(), matches)) return std::string();
  return text;
}

std::optional<unsigned long long> KyNHostText::toNumber(std::string_view raw)
{
  constexpr unsigned long long max = std::numeric_limits<unsigned long long>::max();
  const std::string_view text = trim(raw.substr(0, raw.find('\0')));
  if (text.empty()) return std::nullopt;
  unsigned long long number = 0;
  for (const char c : text)
  {
    if (c < '0' || c > '9') return std::nullopt;
    const unsigned int digit = static_cast<unsigned int>(c - '0');
    if (number > (max - digit) / 10) return std::nullopt;
    number = number * 10 + digit;
  }
  return number;
}

std::optional<unsigned long long> KyNHostText::toFixedPoint(std::string_view raw, unsigned int decimals)
{
  const std::string_view text = trim(raw.substr(0, raw.find('\0')));
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string digits(text.substr(0, point));
  if (digits.empty() || digits.front() == ' ') return std::nullopt;
  if (point < text.size())
  {
    const std::string_view behind = text.substr(point + 1);
    if (behind.empty() || behind.find_first_not_of("0123456789") != behind.npos) return std::nullopt;
    digits += behind.substr(0, decimals);
    decimals -= static_cast<unsigned int>(std::min<std::size_t>(behind.size(), decimals));
  }
  if (digits.find_first_not_of("0123456789") != digits.npos) return std::nullopt;
  digits.append(decimals, '0');
  return toNumber(digits);
}

std::optional<unsigned long long> KyNHostText::scaled(std::optional<unsigned long long> value,
                                                      unsigned long long factor)
{
  if (!value || *value == 0 || *value > std::numeric_limits<unsigned long long>::max() / factor) return std::nullopt;
  return *value * factor;
}

std::string KyNHostText::valueOfKey(std::string_view file, std::string_view key, char separator)
{
  while (!file.empty())
  {
    const std::size_t end = std::min(file.find('\n'), file.size());
    const std::string_view line = file.substr(0, end);
    file.remove_prefix(std::min(end + 1, file.size()));
    if (line.substr(0, key.size()) != key) continue;
    std::string_view rest = trim(line.substr(key.size()));    // /proc/cpuinfo puts tabs before its colon
    if (rest.empty() || rest.front() != separator) continue;
    rest = trim(rest.substr(1));
    if (rest.size() >= 2 && rest.front() == rest.back() && (rest.front() == '"' || rest.front() == '\''))
      rest = rest.substr(1, rest.size() - 2);
    return std::string(rest);
  }
  return std::string();
}
