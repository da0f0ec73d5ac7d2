#include "inventorykit/KyIDs.h"

#include <charconv>
#include <optional>

#include "KyGlob.h"
#include "KyNearest.h"
#include "inventory/KyNInventoryIDs.h"

namespace KyNInventoryKit
{
namespace
{
// The number that a text is from its first to its last character.
std::optional<unsigned int> numberOf(const std::string& text)
{
  const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* const last = text.data() + text.size();
  unsigned int number = 0;
  const auto [end, error] = std::from_chars(text.data() + (isHex ? 2 : 0), last, number, isHex ? 16 : 10);
  if (error != std::errc() || end != last) return std::nullopt;
  return number;
}
}    // namespace

std::vector<NamedID> findIDs(const std::string& pattern)
{
  const std::optional<unsigned int> number = numberOf(pattern);
  const std::string form = hasWildcard(pattern) ? upperCase(pattern) : "*" + upperCase(pattern) + "*";
  std::vector<NamedID> found;
  for (unsigned int id = 0; id < KyNInventoryIDs::Map.getCount(); ++id)
  {
    const char* const name = KyNInventoryIDs::Map.get(id);
    if (number ? id == *number : globMatches(form, name)) found.push_back({id, name});
  }
  return found;
}
}    // namespace KyNInventoryKit
