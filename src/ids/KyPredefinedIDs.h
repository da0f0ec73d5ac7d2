// KyPredefinedIDs.h: the predefined IDs as they stand in the file of the library, for those that load them.
#pragma once

#include <cstdint>

#include "inventory/KyCInventoryAddress.h"

// The memory of an address that has at most one element and never had more.
struct KyIDImage
{
  unsigned int length;
  KyCInventoryAddress::TElement inlineElement;
  KyCInventoryAddress::TElement* elements;    // &inlineElement
};

// The names of the predefined IDs, all behind each other, and where in this text each begins: pointers would be a
// thousand more places for the loader to fill in.
struct KyIDNames
{
  const char* text;
  const std::uint16_t* offsets;
  unsigned int count;

  const char* operator[](unsigned int id) const noexcept { return text + offsets[id]; }
};
extern const KyIDNames kyPredefinedIDNames;
