// KyIdentifiers.h: finds in a text what names a machine by its form: MAC and IP addresses, UUIDs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KyNInventoryKit
{
enum class IdentifierKind
{
  UUID,
  MAC,
  IPV6,
  IPV4
};

struct Identifier
{
  IdentifierKind kind;
  std::size_t length;         // bytes of the text
  std::string bytes;          // what it stands for: 16 bytes of a UUID, 4 of an IPv4 address, ...
  bool isHarmless = false;    // names no machine: loopback, a netmask, nothing but zeros or ones
};

// The identifier that begins at this place; false when none does.
//
// Without separators: a word of 32 hexadecimal digits is a UUID, one of 12 a MAC address, when there are letters and digits
// among them and nothing in front calls it a checksum or a version (md5:, commit, ...).
//
//   isVersion   the text is a version or a checksum: what has its parts joined by dots, or by nothing, is no address
// Cost:       constant.
bool identifierAt(std::string_view text, std::size_t at, bool isVersion, Identifier& identifier);

// An address that has another one in it: an IPv4 address in an IPv6 one, the MAC address in an identifier of 8 bytes (ff and fe
// in the middle; in its usual form, one bit of the first byte is turned over), which also ends IPv6 addresses.
bool isMappedIPv4(std::string_view bytes);
bool isExtendedMac(std::string_view bytes);
std::string extendedMac(const std::string& mac);
std::string macOfExtended(std::string_view bytes);

// "0A1B2C", of an even number of digits and nothing else, as bytes; false for anything else.
bool readHex(std::string_view text, std::string& bytes);
}    // namespace KyNInventoryKit
