// KyDeepAddress.h: paths far deeper than any stack would allow to recurse.
#pragma once

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyNInventoryIDs.h"

// BOARD/BOARD/... of that many levels.
inline KyCInventoryAddress deepAddress(unsigned int depth)
{
  KyCInventoryAddress address(KyNInventoryIDs::BOARD);
  while (address.getLength() < depth)
    address.append(address);    // doubles it
  address.removeSuffixElements(address.getLength() - depth);
  return address;
}
