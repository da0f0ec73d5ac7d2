// KyNInventoryTree.h: helpers for those who build trees.
#pragma once

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyInventoryTreeApi.h"

namespace KyNInventoryTree
{
// Gives an item the standard set of parameters of an update element: one thing in a system that can be updated, such as
// the firmware of a board.
//
//   KyCInventoryItem* const element = root.addPath(pool, KyNInventoryIDs::UPDATE_ELEMENT[3]);
//   KyNInventoryTree::addUpdateElementParameters(element, pool, 3, 1, "FIRMWARE", 17, "ANALOG", true, true, 0, 4);
//
//   item               the item, as a rule of ID UPDATE_ELEMENT, which is not checked; not null
//   id                 ID, unsigned int
//   configuration      CONFIGURATION, unsigned int
//   name               NAME, string
//   typeId             TYPE_ID, unsigned int
//   boardType          BOARD_TYPE, string
//   valid, active      VALID and ACTIVE, unsigned char: 1 for true, 0 for false
//   hwCompatibilityId  HW_COMPATIBILITY_ID, unsigned int; 0: none, and no parameter
//   swCompatibilityId  SW_COMPATIBILITY_ID, unsigned int; 0: none, and no parameter
//
// The parameters are created in this order, without unit, not modifiable, of relevance 2.
//
// Errors:     what createParameter<T> reports, such as 0x130080B for an ID that the item has already; the rest of the
//             parameters are created all the same
// Ownership:  the parameters are the item's.
// Kept on purpose: the item comes first and the pool second, unlike everywhere else.
KY_INVENTORY_API void addUpdateElementParameters(KyCInventoryItem* item, KyCErrorListPool& pool, unsigned int id,
                                                 unsigned int configuration, const KyCString& name, unsigned int typeId,
                                                 const KyCString& boardType, bool valid, bool active,
                                                 unsigned int hwCompatibilityId, unsigned int swCompatibilityId);
}    // namespace KyNInventoryTree
