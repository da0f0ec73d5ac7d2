// KyPlaceText.h: how reports name a place in a tree.
#pragma once

#include "composite/KyCString.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

// The item's address as text; "root item" where that is empty. For the reports of building and merging.
inline KyCString kyItemPlace(const KyCInventoryItem& item)
{
  const KyCInventoryAddress address = item.getAddress();
  return address.isEmpty() ? KyCString("root item") : address.toString();
}

// The parameter's address as text; its ID as text when it hangs nowhere. For the reports of reading and writing values.
inline KyCString kyParameterPlace(const KyCInventoryParameter& parameter)
{
  const KyCInventoryAddress address = parameter.getAddress();
  return address.isEmpty() ? parameter.getID().toString() : address.toString();
}
