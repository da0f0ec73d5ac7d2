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
//   isVersion   the text is a version: what has its parts joined by dots is no address
// Cost:       constant.
bool identifierAt(std::string_view text, std::size_t at, bool isVersion, Identifier& identifier);

// "0A1B2C", of an even number of digits and nothing else, as bytes; false for anything else.
bool readHex(std::string_view text, std::string& bytes);
}    // namespace KyNInventoryKit
