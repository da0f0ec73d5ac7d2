// KyTree.h: walking, measuring and comparing whole trees.
//
//   for (const KyCInventoryItem* item = &root; item != nullptr; item = KyNInventoryKit::nextItem(*item, root))
//     for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext()) ...
#pragma once

#include <memory>
#include <string>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// A whole tree, owned by its root.
using TreePointer = std::unique_ptr<KyCInventoryItem>;

// The item that follows in a walk over top and all below it: parents before children, in list order.
//
// Result:     null at the end.
// Cost:       constant on the average; needs no stack, however deep the tree.
KY_INVENTORYKIT_API const KyCInventoryItem* nextItem(const KyCInventoryItem& item, const KyCInventoryItem& top);
KY_INVENTORYKIT_API KyCInventoryItem* nextItem(KyCInventoryItem& item, const KyCInventoryItem& top);

// As nextItem, without what is below the item.
KY_INVENTORYKIT_API KyCInventoryItem* nextItemBeside(KyCInventoryItem& item, const KyCInventoryItem& top);

struct TreeSize
{
  unsigned int items = 0;    // the top one included
  unsigned int parameters = 0;
  unsigned int depth = 0;    // levels of items; 1 for an item without sub-items
};
// Counts an item and all below it.
//
// Cost:       linear in the size of the tree; needs no stack, however deep.
KY_INVENTORYKIT_API TreeSize measure(const KyCInventoryItem& top);

// Compares two trees in everything that a section stores: IDs, indices, descriptions, order, and each parameter's type,
// value (bit by bit), unit, modifiable flag and relevance.
//
// Result:     empty when equal, otherwise the address of the first difference and what differs there.
KY_INVENTORYKIT_API std::string firstDifference(const KyCInventoryItem& a, const KyCInventoryItem& b);

// Whether two parameters are of one type and have the same value, bit by bit: a NaN equals itself, 0 and -0 differ.
KY_INVENTORYKIT_API bool sameValue(const KyCInventoryParameter& a, const KyCInventoryParameter& b);
}    // namespace KyNInventoryKit
