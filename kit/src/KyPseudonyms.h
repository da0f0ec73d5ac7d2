// KyPseudonyms.h: what stands for a text that must not be seen. See KyAnonymize.h for their forms.
//
// Each is a function of the key and the original alone, without regard to upper and lower case, and never the original.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "KyIdentifiers.h"
#include "KySipHash.h"

namespace KyNInventoryKit
{
class KyPseudonyms
{
public:
  explicit KyPseudonyms(std::string_view key);

  // For what stands in a text: separators and upper or lower case as there.
  std::string ofIdentifier(const Identifier& identifier, std::string_view text) const;
  std::string bytesOf(const Identifier& identifier) const;    // the address itself

  std::string ofSerialNumber(std::string_view text) const;
  std::string ofHost(std::string_view text) const;
  std::string ofDomain(std::string_view text) const;

  // A number from 1 to largest, which is at least 2.
  unsigned long long ofNumber(unsigned long long number, unsigned long long largest) const;

private:
  enum class Kind : char;
  std::uint64_t hash(Kind kind, std::string_view text, unsigned int round, unsigned int part) const;
  std::string ownBytesOf(const Identifier& identifier) const;
  std::string randomBytes(Kind kind, std::string_view text, unsigned int round, std::size_t count) const;
  std::string randomCharacters(std::string_view text, unsigned int round) const;
  std::string named(const char* prefix, Kind kind, std::string_view text) const;

  SipKey m_key;
};

std::string hexOf(std::string_view bytes);       // "001b213c4d5e"
std::string shortMac(std::string_view bytes);    // "0:1b:21:3c:4d:5e"
std::string lowerCase(std::string_view text);    // ASCII
}    // namespace KyNInventoryKit
