// KyStaticDescription.h: recognises descriptions that need no copy.
#pragma once

#include <cstring>

#include "inventory/KyNInventoryIDs.h"

// The registered name of the ID, when the description is the same text: that name lives as long as the
// library, so whoever is described by it keeps the pointer. Null when the description is another text, or null.
inline const char* kyStaticDescription(unsigned int id, const char* description) noexcept
{
  const char* const name = KyNInventoryIDs::Map.get(id);
  if (name == nullptr || description == nullptr) return nullptr;
  return description == name || std::strcmp(description, name) == 0 ? name : nullptr;
}
