// KyStaticDescription.h: recognises descriptions that need no copy.
#pragma once

#include <cstring>

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyNInventoryIDs.h"

// The registered name of the address's ID, when the description is the same text: that name lives as long as the
// library, so whoever is described by it keeps the pointer. Null when the description is another text, or null.
inline const char* kyStaticDescription(const KyCInventoryAddress& address, const char* description) noexcept
{
  const char* const name = KyNInventoryIDs::Map.get(address.getCategory());
  if (name == nullptr || description == nullptr) return nullptr;
  return description == name || std::strcmp(description, name) == 0 ? name : nullptr;
}
