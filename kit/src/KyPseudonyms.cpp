#include "KyPseudonyms.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>

namespace KyNInventoryKit
{
enum class KyPseudonyms::Kind : char
{
  UUID,
  MAC,
  IPV6,
  IPV4,
  SERIAL_NUMBER,
  HOST,
  DOMAIN_NAME,
  NUMBER
};

namespace
{
constexpr char s_hexDigits[] = "0123456789abcdef";
constexpr char s_characters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

// The key of a hash is 128 bits; a text of any length becomes one by two hashes of it under keys that never change.
SipKey keyOf(std::string_view text) { return {sipHash({1, 0}, text), sipHash({2, 0}, text)}; }

bool isAllDigits(std::string_view text)
{
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Puts the hexadecimal digits in place of those of the original.
std::string inFormOf(std::string_view original, const std::string& digits)
{
  std::string text;
  std::size_t next = 0;
  for (const char c : original)
    text += c == ':' || c == '-' || c == '.' ? c : digits[next++];
  return text;
}

bool isShortened(std::string_view mac, std::size_t bytes)
{
  return mac.find(':') < 3 && mac.size() + 1 < 3 * bytes;    // behind a group of four it is no short one
}

std::string inCaseOf(std::string_view original, std::string text)
{
  if (std::none_of(original.begin(), original.end(), [](char c) { return c >= 'A' && c <= 'F'; })) return text;
  for (char& c : text)
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

// Classes of lengths: a pseudonym tells no more of the original's length.
std::size_t lengthOf(std::size_t length, bool isDigits)
{
  for (const std::size_t bound : {std::size_t{10}, std::size_t{16}, std::size_t{19}, std::size_t{24}})
    if (length <= bound && (isDigits || bound != 19)) return bound;
  return 32;
}
}    // namespace

std::string hexOf(std::string_view bytes)
{
  std::string text;
  for (const char c : bytes)
  {
    text += s_hexDigits[static_cast<unsigned char>(c) >> 4];
    text += s_hexDigits[static_cast<unsigned char>(c) & 15];
  }
  return text;
}

std::string shortMac(std::string_view bytes)
{
  std::string text;
  for (const char c : bytes)
  {
    const unsigned int byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ':';
    if (byte > 15) text += s_hexDigits[byte >> 4];
    text += s_hexDigits[byte & 15];
  }
  return text;
}

KyPseudonyms::KyPseudonyms(std::string_view key) : m_key(keyOf(key)) {}

std::uint64_t KyPseudonyms::hash(Kind kind, std::string_view text, unsigned int round, unsigned int part) const
{
  std::string data = {static_cast<char>(kind), static_cast<char>(round), static_cast<char>(part)};
  return sipHash(m_key, data.append(text));
}

std::string KyPseudonyms::randomBytes(Kind kind, std::string_view text, unsigned int round, std::size_t count) const
{
  std::string bytes;
  for (unsigned int part = 0; bytes.size() < count; ++part)
  {
    const std::uint64_t word = hash(kind, text, round, part);
    for (unsigned int n = 0; n < 8 && bytes.size() < count; ++n)
      bytes += static_cast<char>(word >> (8 * n) & 0xFF);
  }
  return bytes;
}

// What holds another address gets the pseudonym of that one into its own.
std::string KyPseudonyms::bytesOf(const Identifier& identifier) const
{
  const std::string& original = identifier.bytes;
  if (identifier.kind == IdentifierKind::MAC && isExtendedMac(original))
  {
    // The bit is set where it has been turned over: those who make cards never set it.
    const bool isTurned = (original[0] & 2) != 0;
    std::string mac = macOfExtended(original);
    if (!isTurned) mac[0] = original[0];
    std::string pseudonym = extendedMac(bytesOf({IdentifierKind::MAC, 0, mac}));
    if (!isTurned) pseudonym[0] = static_cast<char>(pseudonym[0] ^ 2);
    return pseudonym;
  }
  if (identifier.kind == IdentifierKind::IPV6 && isMappedIPv4(original))
    return original.substr(0, 12) + bytesOf({IdentifierKind::IPV4, 0, original.substr(12)});
  std::string pseudonym = ownBytesOf(identifier);
  if (identifier.kind == IdentifierKind::IPV6 && isExtendedMac(std::string_view(original).substr(8)))
    pseudonym.replace(8, 8, extendedMac(bytesOf({IdentifierKind::MAC, 0, macOfExtended(original.substr(8))})));
  return pseudonym;
}

std::string KyPseudonyms::ownBytesOf(const Identifier& identifier) const
{
  const Kind kind = static_cast<Kind>(identifier.kind);
  for (unsigned int round = 0;; ++round)
  {
    std::string bytes = randomBytes(kind, identifier.bytes, round, identifier.bytes.size());
    const auto set = [&](std::size_t at, unsigned int mask, unsigned int bits)
    { bytes[at] = static_cast<char>((static_cast<unsigned char>(bytes[at]) & mask) | bits); };
    switch (identifier.kind)
    {
      case IdentifierKind::UUID:
        set(6, 0x0F, 0x40);    // version 4
        set(8, 0x3F, 0x80);
        break;
      case IdentifierKind::MAC:
        set(0, 0xFC, 0x02);    // locally administered, of one station
        break;
      case IdentifierKind::IPV6:
        bytes.replace(0, 4, "\x20\x01\x0D\xB8");
        break;
      case IdentifierKind::IPV4:
        set(0, 0, 198);
        set(1, 1, 18);
        break;
    }
    if (bytes != identifier.bytes) return bytes;
  }
}

std::string KyPseudonyms::ofIdentifier(const Identifier& identifier, std::string_view text) const
{
  const std::string bytes = bytesOf(identifier);
  char address[64];
  switch (identifier.kind)
  {
    case IdentifierKind::UUID:
    case IdentifierKind::MAC:
      return inCaseOf(text, isShortened(text, bytes.size()) ? shortMac(bytes) : inFormOf(text, hexOf(bytes)));
    case IdentifierKind::IPV6:
      return ::inet_ntop(AF_INET6, bytes.data(), address, sizeof(address));
    case IdentifierKind::IPV4:
      break;
  }
  return ::inet_ntop(AF_INET, bytes.data(), address, sizeof(address));
}

std::string KyPseudonyms::randomCharacters(std::string_view text, unsigned int round) const
{
  const bool isDigits = isAllDigits(text);
  const std::size_t length = lengthOf(text.size(), isDigits);
  std::string characters;
  for (unsigned int part = 0; characters.size() < length; ++part)
  {
    std::uint64_t word = hash(Kind::SERIAL_NUMBER, text, round, part);
    const unsigned int base = isDigits ? 10 : 36;
    for (unsigned int n = 0; n < 10 && characters.size() < length; ++n, word /= base)
      characters += isDigits ? static_cast<char>('0' + word % 10) : s_characters[word % 36];
  }
  characters[0] = isDigits ? '1' : s_characters[hash(Kind::SERIAL_NUMBER, text, round, 0xFF) % 26];
  return characters;
}

std::string KyPseudonyms::ofSerialNumber(std::string_view text) const
{
  const std::string original = lowerCase(text);
  for (unsigned int round = 0;; ++round)
  {
    const std::string pseudonym = randomCharacters(original, round);
    if (lowerCase(pseudonym) != original) return pseudonym;
  }
}

std::string KyPseudonyms::named(const char* prefix, Kind kind, std::string_view text) const
{
  const std::string original = lowerCase(text);
  for (unsigned int round = 0;; ++round)
  {
    const std::string pseudonym = prefix + hexOf(randomBytes(kind, original, round, 4));
    if (pseudonym != original) return pseudonym;
  }
}

std::string KyPseudonyms::ofHost(std::string_view text) const { return named("host-", Kind::HOST, text); }
std::string KyPseudonyms::ofDomain(std::string_view text) const { return named("domain-", Kind::DOMAIN_NAME, text); }

unsigned long long KyPseudonyms::ofNumber(unsigned long long number, unsigned long long largest) const
{
  const std::string original = std::to_string(number);
  for (unsigned int round = 0;; ++round)
  {
    const unsigned long long pseudonym = 1 + hash(Kind::NUMBER, original, round, 0) % largest;
    if (pseudonym != number) return pseudonym;
  }
}

std::string lowerCase(std::string_view text)
{
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}
}    // namespace KyNInventoryKit
