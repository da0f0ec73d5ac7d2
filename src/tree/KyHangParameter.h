// KyHangParameter.h: the last step of adding a parameter.
#pragma once

#include "inventory/KyCInventoryItem.h"
#include "tree/KyInventoryAccess.h"

bool kyHangSeenParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter* parameter);

// Hangs a free parameter into an item. Reports as KyCInventoryItem::addParameter does, whose second half this is.
//
// Result:  false on failure; the parameter is then the caller's still.
inline bool kyHangParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter* parameter)
{
  return KyInventoryAccess::addUnseenParameter(item, parameter) || kyHangSeenParameter(pool, item, parameter);
}
