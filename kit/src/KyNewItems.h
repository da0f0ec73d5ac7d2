// KyNewItems.h: the items that creating a parameter makes on the way to it, for taking them away again.
#pragma once

#include "inventory/KyCInventoryItem.h"

namespace KyNInventoryKit
{
// How many elements of an address, from its first one on, lead to items that are there.
unsigned int countKnownItems(KyCInventoryItem& top, const KyCInventoryAddress& address);

// Takes away what an address leads to, from the first item on that is not there yet. Of the address, `known` elements
// lead to items that were there before.
void removeNewItems(KyCInventoryItem& top, const KyCInventoryAddress& address, unsigned int known);
}    // namespace KyNInventoryKit
